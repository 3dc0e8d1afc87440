#include "editing/find/FindWalk.h"

namespace quillory {

namespace {

using namespace Qt::StringLiterals;

/// Code units before a window's first match, for what looks behind.
constexpr TextOffset lookBehind = 1024;

void check(UErrorCode status)
{
    ICUException::check(status, "Find Exception"_L1, "%s"_L1);
}

/// \a offset, or the one before where it lies within a character or a line break.
TextOffset atCharacter(const TextSnapshot& text, TextOffset offset)
{
    if (offset <= 0 || offset >= text.length())
        return offset;
    const char16_t before = text.at(offset - 1);
    const char16_t after = text.at(offset);
    const bool splits = (QChar::isHighSurrogate(before) && QChar::isLowSurrogate(after)) ||
                        (before == u'\r' && after == u'\n');
    return splits ? offset - 1 : offset;
}

} // namespace

FindWalk::FindWalk(TextSnapshot text, std::shared_ptr<ICUPattern> pattern, TextOffset from,
                   const std::atomic_bool* givesUp)
    : m_text(std::move(text)), m_pattern(std::move(pattern)), m_at(from), m_givesUp(givesUp)
{}

void FindWalk::takeWindow(TextOffset length)
{
    m_base = atCharacter(m_text, std::max<TextOffset>(0, m_at - lookBehind));
    m_end = std::min(m_text.length(), m_at + length);
    if (m_end < m_text.length())
        m_end = atCharacter(m_text, m_end);
    const QString units = m_text.string(TextRange::between(m_base, m_end));
    m_pattern->setStringToSearch(units.isNull() ? u""_s : units);
}

std::optional<TextRange> FindWalk::next()
{
    TextOffset length = window;
    if (!m_isOver && !isInWindow())
        takeWindow(length);
    while (!m_isOver && !(m_givesUp && *m_givesUp)) {
        URegularExpression* const re = m_pattern->re();
        UErrorCode status = U_ZERO_ERROR;
        const bool isFound = uregex_find64(re, m_at - m_base, &status);
        const bool needsMore = m_end < m_text.length() && uregex_hitEnd(re, &status);
        check(status);
        if (isFound && (!needsMore || length >= largestWindow)) {
            const TextRange match = TextRange::between(m_base + uregex_start64(re, 0, &status),
                                                       m_base + uregex_end64(re, 0, &status));
            check(status);
            m_isOver = match.isEmpty() && match.end() == m_text.length();
            m_at = match.end();
            if (match.isEmpty() && !m_isOver)
                m_at +=
                    QChar::isHighSurrogate(m_text.at(m_at)) && atCharacter(m_text, m_at + 1) == m_at
                        ? 2
                        : 1;
            return match;
        }
        if (isFound) {
            m_at = m_base + uregex_start64(re, 0, &status);
            length *= 2;
        } else if (m_end == m_text.length()) {
            m_isOver = true;
            m_at = m_end;
            break;
        } else {
            m_at = std::max(m_at, atCharacter(m_text, m_end - overlap));
            length = window;
        }
        takeWindow(length);
    }
    return {};
}

std::optional<QString> FindWalk::group(int number) const
{
    URegularExpression* const re = m_pattern->re();
    UErrorCode status = U_ZERO_ERROR;
    if (number > uregex_groupCount(re, &status))
        return {};
    const int64_t start = uregex_start64(re, number, &status);
    const int64_t end = uregex_end64(re, number, &status);
    check(status);
    return start < 0 ? u""_s : m_pattern->stringToSearch().mid(start, end - start);
}

int FindWalk::groupNamed(const QString& name) const
{
    UErrorCode status = U_ZERO_ERROR;
    const auto* const units = reinterpret_cast<const char16_t*>(name.utf16());
    const int number =
        uregex_groupNumberFromName(m_pattern->re(), units, int32_t(name.size()), &status);
    return U_SUCCESS(status) ? number : 0;
}

} // namespace quillory
