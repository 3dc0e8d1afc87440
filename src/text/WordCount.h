#pragma once

#include "text/TextSnapshot.h"

#include <memory>
#include <string>

struct UBreakIterator;

namespace quillory {

/// Counts the words of a stretch of text, piece by piece: so it takes bounded memory, can be left
/// off after any step and taken up on another thread. A word is what lies between two word
/// boundaries of UAX #29, as ICU finds them, and holds a letter, a mark or a number. Stretches of
/// some 64K code units without a blank or a line break are cut, which scripts that need a
/// dictionary to tell words apart may show in a count.
class WordCount
{
public:
    /// \a pieceUnits: how much a step looks at where nothing else decides.
    WordCount(TextSnapshot text, TextRange range, TextOffset pieceUnits = TextOffset(1) << 16);
    ~WordCount();
    WordCount(WordCount&&) noexcept;
    WordCount& operator=(WordCount&&) noexcept;

    bool isAtEnd() const { return m_at == m_end; }
    /// Counts in the next piece, not at the end; answers it.
    TextRange step();

    /// The words that begin before where the last step ended.
    qint64 words() const { return m_words; }

private:
    struct Close
    {
        void operator()(UBreakIterator* iterator) const;
    };

    void read(TextOffset length);
    void countPiece(std::u16string_view units);
    void countByRules(std::u16string_view units);
    size_t countBeforeCut(std::u16string_view units);
    void take(std::u16string_view word);

    TextSnapshot m_text;
    TextOffset m_at;
    TextOffset m_end;
    TextOffset m_pieceUnits;
    qint64 m_words = 0;
    bool m_inWord = false;  ///< the piece before ended inside of one, cut
    bool m_isWord = false;  ///< which was counted
    std::u16string m_units; ///< of the piece
    std::unique_ptr<UBreakIterator, Close> m_iterator;
};

} // namespace quillory
