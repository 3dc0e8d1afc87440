#pragma once

#include "text/WordCount.h"

#include <QLocale>
#include <optional>
#include <vector>

namespace quillory {

/// How much a text holds, or what is selected of it.
struct TextStatistics
{
    qint64 characters = 0;              ///< UTF-16 code units
    qint64 charactersWithoutSpaces = 0; ///< without U+0020, and nothing else
    qint64 words = 0;                   ///< those of WordCount
    std::optional<qint64> lines;        ///< as the line numbers count them; nothing for a selection

    bool operator==(const TextStatistics&) const = default;
};

/// Counts what a text holds, piece by piece and in bounded memory, on any thread.
class StatisticsCount
{
public:
    /// Of all of \a text where nothing is \a selected, otherwise of those ranges, which lie apart.
    explicit StatisticsCount(TextSnapshot text, std::vector<TextRange> selected = {});

    /// Counts on, a small part of a second; false once all is counted.
    bool step();

    /// What is known so far: the characters and the lines from the start, the others
    /// of what was looked at.
    const TextStatistics& statistics() const { return m_statistics; }
    bool isOfSelection() const { return !m_statistics.lines; }
    /// How much of the text was looked at, from 0 to 1.
    double share() const;

private:
    TextSnapshot m_text;
    std::vector<TextRange> m_ranges; ///< to be counted, the last one first
    std::optional<WordCount> m_words;
    qint64 m_wordsBefore = 0;
    TextOffset m_seen = 0;
    TextStatistics m_statistics;
};

/// How many characters of \a text are U+0020.
qint64 whitespaceCountForString(const TextSnapshot& text, TextRange range);

/// \a number with a separator between groups of three digits, both as \a locale writes them.
QString thousandFormatedStringFromNumber(qint64 number, const QLocale& locale = QLocale());

} // namespace quillory
