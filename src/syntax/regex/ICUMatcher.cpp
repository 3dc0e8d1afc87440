#include "syntax/regex/ICUMatcher.h"

#include <limits>
#include <new>

namespace quillory {

using namespace Qt::StringLiterals;

namespace {

constexpr TextOffset longest = std::numeric_limits<int32_t>::max();

void checkFind(UErrorCode status)
{
    ICUException::check(status, "Find Exception"_L1, "%s"_L1);
}

/// What \a find answers, given a status that is checked afterwards.
template<class Find>
auto checkedFind(Find&& find)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto answer = find(&status);
    checkFind(status);
    return answer;
}

/// ICU answers a place outside its subject with an error of its own.
int32_t icuIndex(TextOffset index)
{
    return int32_t(std::min(index, longest));
}

char16_t* units(QString& string)
{
    return reinterpret_cast<char16_t*>(string.data());
}

} // namespace

ICUMatcher::ICUMatcher(std::shared_ptr<ICUPattern> pattern, const QString& string)
    : m_pattern(std::move(pattern))
{
    m_pattern->setStringToSearch(string);
}

ICUMatcher ICUMatcher::matcherWithPattern(std::shared_ptr<ICUPattern> pattern,
                                          const QString& overString)
{
    return {std::move(pattern), overString};
}

bool ICUMatcher::matches()
{
    return checkedFind([this](UErrorCode* status) { return uregex_matches(re(), 0, status); });
}

bool ICUMatcher::findNext()
{
    return checkedFind([this](UErrorCode* status) { return uregex_findNext(re(), status); });
}

bool ICUMatcher::findFromIndex(TextOffset index)
{
    reset();
    return checkedFind(
        [&](UErrorCode* status) { return uregex_find(re(), icuIndex(index), status); });
}

bool ICUMatcher::lookingAt(TextOffset index)
{
    return checkedFind(
        [&](UErrorCode* status) { return uregex_lookingAt(re(), icuIndex(index), status); });
}

TextRange ICUMatcher::rangeOfMatchGroup(int group) const
{
    const auto start =
        checkedFind([&](UErrorCode* status) { return uregex_start(re(), group, status); });
    const auto end =
        checkedFind([&](UErrorCode* status) { return uregex_end(re(), group, status); });
    return {start, end - start};
}

QString ICUMatcher::group() const
{
    const TextRange range = rangeOfMatch();
    return m_pattern->stringToSearch().mid(range.location, range.length);
}

QString ICUMatcher::groupAtIndex(int group) const
{
    QString text(128, Qt::Uninitialized);
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length =
            uregex_group(re(), group, units(text), int32_t(text.size()), &status);
        if (status != U_BUFFER_OVERFLOW_ERROR) {
            checkFind(status);
            text.truncate(length);
            return text;
        }
        text = QString(std::min(text.size() * 2, longest), Qt::Uninitialized);
    }
}

int ICUMatcher::numberOfGroups() const
{
    return checkedFind([this](UErrorCode* status) { return uregex_groupCount(re(), status); });
}

QString ICUMatcher::replaceAllWithString(const QString& string)
{
    return performReplacementWithString(string, true);
}

QString ICUMatcher::replaceFirstWithString(const QString& string)
{
    return performReplacementWithString(string, false);
}

QString ICUMatcher::performReplacementWithString(const QString& string, bool replaceAll)
{
    const auto replace = replaceAll ? uregex_replaceAll : uregex_replaceFirst;
    const auto* const replacement = QStringView(string).utf16();
    TextOffset capacity = m_pattern->stringToSearch().size() * 2;
    for (;;) {
        QString result;
        try {
            result = QString(std::clamp<TextOffset>(capacity, 1, longest), Qt::Uninitialized);
        } catch (const std::bad_alloc&) {
            throw ICUException(u"Find Exception"_s,
                               u"Could not allocate memory for replacement string"_s);
        }
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length = replace(re(), replacement, int32_t(string.size()), units(result),
                                       int32_t(result.size()), &status);
        if (status != U_BUFFER_OVERFLOW_ERROR) {
            ICUException::check(status, "Find Exception"_L1,
                                "Could not perform find and replace: %s"_L1);
            result.truncate(length);
            return result;
        }
        capacity = TextOffset(length) + 1;
    }
}

} // namespace quillory
