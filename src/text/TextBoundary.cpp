#include "text/TextBoundary.h"

#include "text/LineMetrics.h"
#include "text/TextReader.h"
#include "text/TextUnits.h"

#include <QString>
#include <memory>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>

namespace quillory {

namespace {

/// How far from an offset a look-up reads at the most, in UTF-16 code units.
constexpr TextOffset reach = 2048;
/// Emoji sequences are no longer than this, in UTF-16 code units.
constexpr TextOffset longestEmoji = 64;
constexpr UChar32 keycapFrame = 0x20E3;

struct IteratorCloser
{
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};

/// Finds boundaries in one stretch of a text. ICU's iterators are costly to open, so each thread
/// keeps one of each kind.
class Boundaries
{
public:
    Boundaries(UBreakIteratorType type, const TextSnapshot& text, TextRange stretch)
        : Boundaries(type, text.string(stretch), stretch.location)
    {}

    /// \a units stand at \a start.
    Boundaries(UBreakIteratorType type, QString units, TextOffset start)
        : m_units(std::move(units)), m_start(start), m_iterator(iterator(type))
    {
        UErrorCode status = U_ZERO_ERROR;
        ubrk_setText(m_iterator, reinterpret_cast<const UChar*>(m_units.utf16()),
                     int32_t(m_units.size()), &status);
    }

    /// The boundary after \a offset; the stretch's end where there is none.
    TextOffset following(TextOffset offset)
    {
        const int32_t found = ubrk_following(m_iterator, int32_t(offset - m_start));
        return m_start + (found == UBRK_DONE ? m_units.size() : found);
    }

    /// The boundary before \a offset; the stretch's start where there is none.
    TextOffset preceding(TextOffset offset)
    {
        const int32_t found = ubrk_preceding(m_iterator, int32_t(offset - m_start));
        return m_start + (found == UBRK_DONE ? 0 : found);
    }

    /// True when what ends at the boundary found last is a word and not blanks or signs.
    bool endsWord() const { return ubrk_getRuleStatus(m_iterator) >= UBRK_WORD_NONE_LIMIT; }

    bool endsLetterWord() const
    {
        const int32_t status = ubrk_getRuleStatus(m_iterator);
        return status >= UBRK_WORD_LETTER && status < UBRK_WORD_LETTER_LIMIT;
    }

    bool isBoundary(TextOffset offset)
    {
        return ubrk_isBoundary(m_iterator, int32_t(offset - m_start)) != 0;
    }

private:
    static UBreakIterator* iterator(UBreakIteratorType type)
    {
        thread_local std::unique_ptr<UBreakIterator, IteratorCloser> iterators[2];
        auto& slot = iterators[type == UBRK_WORD ? 1 : 0];
        if (!slot) {
            UErrorCode status = U_ZERO_ERROR;
            slot.reset(ubrk_open(type, "", nullptr, 0, &status));
        }
        return slot.get();
    }

    QString m_units;
    TextOffset m_start;
    UBreakIterator* m_iterator;
};

/// True for a unit that no rule joins to what stands before it.
bool standsAlone(char16_t unit)
{
    return unit < 0x80 && unit != u'\n';
}

/// ICU takes an offset between the halves of a surrogate pair for the one before them.
TextOffset codePointStart(const TextSnapshot& text, TextOffset offset)
{
    const bool inside = offset > 0 && belongTogether(text.at(offset - 1), text.at(offset)) &&
                        text.at(offset) != u'\n';
    return inside ? offset - 1 : offset;
}

/// The stretch of text from a place where a character surely begins, before \a offset, to \a end.
TextRange characterStretch(const TextSnapshot& text, TextOffset offset, TextOffset end)
{
    TextReader reader(text);
    const TextOffset limit = std::max<TextOffset>(0, offset - reach);
    TextOffset start = offset;
    while (start > limit && (start == offset || !standsAlone(reader.at(start))))
        --start;
    return TextRange::between(start, end);
}

/// The part of the line around \a offset that words are sought in, without its line break.
TextRange wordStretch(const TextSnapshot& text, TextOffset offset)
{
    const TextRange line = text.lineContent(text.lineAt(offset));
    const TextOffset start = std::max(line.location, offset - reach);
    return TextRange::between(start, std::max(start, std::min(line.end(), offset + reach)));
}

} // namespace

TextOffset characterAfter(const TextSnapshot& text, TextOffset offset)
{
    if (offset >= text.length())
        return text.length();
    TextReader reader(text);
    if (offset + 1 == text.length() ||
        (standsAlone(reader.at(offset)) && standsAlone(reader.at(offset + 1))))
        return offset + 1;
    const TextOffset end = std::min(text.length(), offset + reach);
    return Boundaries(UBRK_CHARACTER, text, TextRange::between(offset, end)).following(offset);
}

TextOffset characterBefore(const TextSnapshot& text, TextOffset offset)
{
    if (offset <= 1)
        return 0;
    TextReader reader(text);
    if (standsAlone(reader.at(offset - 1)))
        return offset - 1;
    // The character's own end may lie behind the offset, which must not hide where it begins.
    const TextRange stretch = characterStretch(text, offset, offset);
    return Boundaries(UBRK_CHARACTER, text, stretch).preceding(offset);
}

TextOffset deletionStartBefore(const TextSnapshot& text, TextOffset offset)
{
    const TextOffset start = characterBefore(text, offset);
    if (offset - start <= 1)
        return start;
    TextReader reader(text);
    const auto lengthBefore = [&](TextOffset end) {
        return TextOffset(QChar::requiresSurrogates(reader.codePointBefore(end)) ? 2 : 1);
    };
    // A flag is two letters, a keycap ends in its frame; all other emoji hold a pictograph.
    for (TextOffset at = offset; at > start && offset - at < longestEmoji; at -= lengthBefore(at)) {
        const auto code = UChar32(reader.codePointBefore(at));
        if (code == keycapFrame || code == u'\n' ||
            u_hasBinaryProperty(code, UCHAR_EXTENDED_PICTOGRAPHIC) ||
            u_hasBinaryProperty(code, UCHAR_REGIONAL_INDICATOR))
            return start;
    }
    TextOffset last = std::max(start, offset - lengthBefore(offset));
    if (last > start &&
        u_hasBinaryProperty(UChar32(reader.codePointAt(last)), UCHAR_VARIATION_SELECTOR))
        last -= lengthBefore(last);
    return std::max(start, last);
}

TextOffset characterStart(const TextSnapshot& text, TextOffset offset)
{
    if (offset <= 0 || offset >= text.length() || standsAlone(text.at(offset)))
        return std::clamp<TextOffset>(offset, 0, text.length());
    offset = codePointStart(text, offset);
    const TextRange stretch = characterStretch(text, offset, std::min(text.length(), offset + 2));
    Boundaries boundaries(UBRK_CHARACTER, text, stretch);
    return boundaries.isBoundary(offset) ? offset : boundaries.preceding(offset);
}

TextOffset wordEndAfter(const TextSnapshot& text, TextOffset offset)
{
    if (offset >= text.length())
        return text.length();
    const TextRange stretch = wordStretch(text, offset);
    if (offset >= stretch.end())
        return characterAfter(text, offset); // past the line break
    Boundaries boundaries(UBRK_WORD, text, stretch);
    TextOffset end = offset;
    do {
        end = boundaries.following(end);
    } while (end < stretch.end() && !boundaries.endsWord());
    return end;
}

TextOffset wordStartBefore(const TextSnapshot& text, TextOffset offset)
{
    if (offset <= 0)
        return 0;
    const TextRange stretch = wordStretch(text, offset);
    if (offset <= stretch.location)
        return characterBefore(text, offset); // before the line break
    Boundaries boundaries(UBRK_WORD, text, stretch);
    TextOffset start = std::min(offset, stretch.end());
    while (start > stretch.location) {
        const TextOffset end = start;
        start = boundaries.preceding(end);
        boundaries.following(start); // tells what ends there
        if (boundaries.endsWord())
            break;
    }
    return start;
}

TextRange wordAt(const TextSnapshot& text, TextOffset offset)
{
    if (text.isEmpty())
        return {};
    offset = codePointStart(text, std::min(offset, text.length() - 1));
    const TextRange stretch = wordStretch(text, offset);
    if (offset >= stretch.end())
        return TextRange::between(stretch.end(), text.line(text.lineAt(offset)).end());
    TextReader reader(text);
    if (isSpaceOrTab(reader.at(offset))) {
        TextOffset start = offset;
        TextOffset end = offset + 1;
        while (start > stretch.location && isSpaceOrTab(reader.at(start - 1)))
            --start;
        while (end < stretch.end() && isSpaceOrTab(reader.at(end)))
            ++end;
        return TextRange::between(start, end);
    }
    Boundaries boundaries(UBRK_WORD, text, stretch);
    const TextOffset start = boundaries.isBoundary(offset) ? offset : boundaries.preceding(offset);
    return TextRange::between(start, boundaries.following(offset));
}

std::vector<TextRange> letterWords(const QString& units)
{
    std::vector<TextRange> words;
    Boundaries boundaries(UBRK_WORD, units, 0);
    for (TextOffset start = 0; start < units.size();) {
        const TextOffset end = boundaries.following(start);
        if (boundaries.endsLetterWord())
            words.push_back(TextRange::between(start, end));
        start = end;
    }
    return words;
}

} // namespace quillory
