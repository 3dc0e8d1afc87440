#include "document/TextStatistics.h"

#include <algorithm>

namespace quillory {

StatisticsCount::StatisticsCount(TextSnapshot text, std::vector<TextRange> selected)
    : m_text(std::move(text)), m_ranges(std::move(selected))
{
    if (m_ranges.empty()) {
        m_ranges.push_back(m_text.range());
        m_statistics.lines = m_text.lineCount();
    }
    for (const TextRange& range : m_ranges)
        m_statistics.characters += range.length;
    std::reverse(m_ranges.begin(), m_ranges.end());
}

bool StatisticsCount::step()
{
    if (m_words && m_words->isAtEnd())
        m_words.reset();
    if (!m_words) {
        if (m_ranges.empty())
            return false;
        m_words.emplace(m_text, m_ranges.back());
        m_wordsBefore = m_statistics.words;
        m_ranges.pop_back();
    }
    if (!m_words->isAtEnd()) {
        const TextRange seen = m_words->step();
        m_seen += seen.length;
        m_statistics.charactersWithoutSpaces +=
            seen.length - whitespaceCountForString(m_text, seen);
        m_statistics.words = m_wordsBefore + m_words->words();
    }
    return !m_ranges.empty() || !m_words->isAtEnd();
}

double StatisticsCount::share() const
{
    return m_statistics.characters > 0 ? double(m_seen) / double(m_statistics.characters) : 1;
}

qint64 whitespaceCountForString(const TextSnapshot& text, TextRange range)
{
    qint64 count = 0;
    text.forEachPiece(range, [&](const TextPiece& piece) {
        count +=
            std::visit([](auto view) { return qint64(std::count(view.begin(), view.end(), u' ')); },
                       piece.units);
    });
    return count;
}

QString thousandFormatedStringFromNumber(qint64 number, const QLocale& locale)
{
    constexpr qsizetype group = 3;
    QLocale plain = locale;
    plain.setNumberOptions(plain.numberOptions() | QLocale::OmitGroupSeparator);
    QString digits = plain.toString(number);
    const qsizetype digitUnits = locale.zeroDigit().size(); // 2 in some scripts
    for (qsizetype end = digits.size() - group * digitUnits; end > 0; end -= group * digitUnits)
        digits.insert(end, locale.groupSeparator());
    return digits;
}

} // namespace quillory
