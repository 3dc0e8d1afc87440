#include "syntax/regex/ICUPattern.h"

#include <limits>
#include <vector>

namespace quillory {

using namespace Qt::StringLiterals;

namespace {

void failAssertion(QLatin1StringView message)
{
    throw ICUException(u"Assertion Exception"_s, message);
}

int32_t doubled(int32_t size)
{
    if (size > std::numeric_limits<int32_t>::max() / 2)
        failAssertion("Overflow occurred splitting string."_L1);
    return size * 2;
}

} // namespace

std::shared_ptr<ICUPattern> ICUPattern::patternWithString(const QString& string, uint32_t flags)
{
    return std::make_shared<ICUPattern>(string, flags);
}

ICUPattern::ICUPattern(const QString& string, uint32_t flags) : m_flags(flags)
{
    UErrorCode status = U_ZERO_ERROR;
    UParseError where;
    m_re.reset(
        uregex_open(QStringView(string).utf16(), int32_t(string.size()), flags, &where, &status));
    ICUException::check(status, "Invalid Pattern Exception"_L1, "Could not compile pattern: %s"_L1);
    setLimits();
}

ICUPattern::ICUPattern(const ICUPattern& other) : m_flags(other.m_flags)
{
    UErrorCode status = U_ZERO_ERROR;
    m_re.reset(uregex_clone(other.re(), &status));
    ICUException::check(status, "Copy Exception"_L1, "Could not copy pattern: %s"_L1);
    setLimits();
}

ICUPattern& ICUPattern::operator=(const ICUPattern& other)
{
    return *this = ICUPattern(other);
}

void ICUPattern::setLimits()
{
    UErrorCode status = U_ZERO_ERROR;
    uregex_setStackLimit(re(), stackLimit, &status);
    uregex_setTimeLimit(re(), timeLimit, &status);
    ICUException::check(status, "Invalid Pattern Exception"_L1, "Could not compile pattern: %s"_L1);
}

void ICUPattern::setRe(URegularExpression* re)
{
    m_re.reset(re);
    m_stringToSearch = QString();
    setLimits();
}

void ICUPattern::setStringToSearch(const QString& string)
{
    if (string.isNull())
        failAssertion("Invalid parameter not satisfying: string"_L1);
    // Taking the address ends a raw-data string with a NUL of its own, which the copy shares.
    const auto* const text = reinterpret_cast<const char16_t*>(string.utf16());
    UErrorCode status = U_ZERO_ERROR;
    if (string.size() > std::numeric_limits<int32_t>::max())
        status = U_INDEX_OUTOFBOUNDS_ERROR;
    else
        uregex_setText(re(), text, int32_t(string.size()), &status);
    uregex_setTimeLimit(re(), timeLimit + int32_t(string.size() / 1000), &status);
    ICUException::check(status, "Invalid String Exception"_L1,
                        "Could not set text to match against: %s"_L1);
    m_stringToSearch = string;
}

const char16_t* ICUPattern::textToSearch() const
{
    return m_stringToSearch.isNull() ? nullptr : QStringView(m_stringToSearch).utf16();
}

void ICUPattern::reset()
{
    UErrorCode status = U_ZERO_ERROR;
    uregex_reset(re(), 0, &status);
    ICUException::check(status, "Pattern Exception"_L1, "Could not reset pattern: %s"_L1);
}

QString ICUPattern::pattern() const
{
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    const char16_t* const text = uregex_pattern(re(), &length, &status);
    ICUException::check(status, "Pattern Exception"_L1,
                        "Could not get pattern text from pattern."_L1);
    return QStringView(text, length).toString();
}

QStringList ICUPattern::componentsSplitFromString(const QString& string)
{
    setStringToSearch(string);
    std::vector<char16_t> buffer(size_t(std::max<qsizetype>(string.size(), 1)));
    std::vector<char16_t*> fields(16);
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        int32_t required = 0;
        const int32_t count = uregex_split(re(), buffer.data(), int32_t(buffer.size()), &required,
                                           fields.data(), int32_t(fields.size()), &status);
        if (size_t(count) > fields.size())
            failAssertion("Unexpected number of components found in split."_L1);
        const bool overflow = status == U_BUFFER_OVERFLOW_ERROR;
        if (!overflow)
            ICUException::check(status, "Split Exception"_L1, "Unable to split string: %s"_L1);
        // The last of as many fields as there is room for may hold several.
        const bool full = size_t(count) == fields.size();
        if (overflow)
            buffer.resize(size_t(doubled(int32_t(buffer.size()))));
        if (full)
            fields.resize(size_t(doubled(int32_t(fields.size()))));
        if (overflow || full)
            continue;

        // The fields lie one after the other, each with a NUL behind it. Their places rather than
        // their NULs tell their lengths, since a text may hold NULs.
        QStringList components;
        components.reserve(count);
        for (int32_t i = 0; i < count; ++i) {
            const char16_t* const end =
                i + 1 < count ? fields[size_t(i) + 1] : &buffer[0] + required;
            components.append(
                QStringView(fields[size_t(i)], end - fields[size_t(i)] - 1).toString());
        }
        return components;
    }
}

bool ICUPattern::matchesString(const QString& string)
{
    setStringToSearch(string);
    UErrorCode status = U_ZERO_ERROR;
    const bool matches = uregex_matches(re(), 0, &status);
    ICUException::check(status, "Find Exception"_L1, "%s"_L1);
    return matches;
}

} // namespace quillory
