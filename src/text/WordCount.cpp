#include "text/WordCount.h"

#include "text/CharacterSet.h"

#include <algorithm>
#include <optional>
#include <unicode/ubrk.h>
#include <unicode/utf16.h>

// A text falls apart into tokens at ASCII blanks and line breaks, and how many words a token has
// does not depend on its neighbours: no rule joins across them but that a mark belongs to the blank
// before it, and then it is a word with the blank as it is one without.

namespace quillory {

namespace {

/// The longest stretch without a blank that is looked at as a whole, in UTF-16 code units.
constexpr size_t longestToken = size_t(1) << 16;
/// So far from the end of a stretch that was cut, boundaries are what they are without the cut.
constexpr size_t sureUnits = 1024;

constexpr bool isBlank(char16_t unit)
{
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

constexpr bool isLetter(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

constexpr bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

/// UAX #29, rules WB6, WB7, WB11 and WB12: the signs that join two letters, and two digits.
constexpr bool joins(char16_t before, char16_t sign, char16_t after)
{
    if (isLetter(before) && isLetter(after))
        return sign == u'.' || sign == u'\'';
    return isDigit(before) && isDigit(after) &&
           (sign == u'.' || sign == u'\'' || sign == u',' || sign == u';');
}

/// The words of a token that is ASCII; nothing where it is not, or has a colon, whose part in words
/// differs from one version of the rules to the next.
std::optional<qint64> asciiWords(std::u16string_view token)
{
    qint64 words = 0;
    for (size_t i = 0; i < token.size(); ++i) {
        bool isWord = false;
        for (; i < token.size(); ++i) {
            const char16_t unit = token[i];
            if (unit >= 0x80 || unit == u':')
                return std::nullopt;
            const bool isPart = isLetter(unit) || isDigit(unit);
            isWord |= isPart;
            if (isPart || unit == u'_')
                continue;
            if (i == 0 || i + 1 == token.size() || !joins(token[i - 1], unit, token[i + 1]))
                break;
        }
        words += isWord;
    }
    return words;
}

} // namespace

void WordCount::Close::operator()(UBreakIterator* iterator) const
{
    ubrk_close(iterator);
}

WordCount::WordCount(TextSnapshot text, TextRange range, TextOffset pieceUnits)
    : m_text(std::move(text)), m_at(range.location), m_end(range.end()), m_pieceUnits(pieceUnits)
{
    UErrorCode status = U_ZERO_ERROR;
    m_iterator.reset(ubrk_open(UBRK_WORD, "", nullptr, 0, &status));
}

WordCount::~WordCount() = default;
WordCount::WordCount(WordCount&&) noexcept = default;
WordCount& WordCount::operator=(WordCount&&) noexcept = default;

TextRange WordCount::step()
{
    const TextOffset start = m_at;
    size_t length = 0; // up to a blank
    for (auto wanted = m_pieceUnits; length == 0; wanted *= 2) {
        read(std::min({wanted, m_end - m_at, TextOffset(longestToken)}));
        const auto blank = std::find_if(m_units.rbegin(), m_units.rend(), isBlank);
        length = m_at + TextOffset(m_units.size()) == m_end ? m_units.size()
                                                            : size_t(m_units.rend() - blank);
        if (m_units.size() == longestToken)
            break;
    }
    if (length > 0)
        countPiece({m_units.data(), length});
    else
        length = countBeforeCut(m_units);
    m_at += TextOffset(length);
    return TextRange::between(start, m_at);
}

void WordCount::read(TextOffset length)
{
    m_units.clear();
    m_text.forEachPiece({m_at, length}, [&](const TextPiece& piece) {
        std::visit(
            [&](auto view) {
                if constexpr (std::is_same_v<decltype(view), QStringView>)
                    m_units.append(view.utf16(), size_t(view.size()));
                else
                    m_units.append(reinterpret_cast<const uchar*>(view.data()),
                                   reinterpret_cast<const uchar*>(view.data()) + view.size());
            },
            piece.units);
    });
}

/// Whole tokens; neighbours that are more than ASCII are counted together.
void WordCount::countPiece(std::u16string_view units)
{
    size_t others = 0; // where those that are not counted yet begin
    size_t end = 0;
    for (size_t start = 0; start < units.size(); start = end) {
        end = size_t(std::find_if(units.begin() + ptrdiff_t(start), units.end(), isBlank) -
                     units.begin());
        const auto words = m_inWord ? std::nullopt : asciiWords(units.substr(start, end - start));
        end = std::min(end + 1, units.size());
        if (!words)
            continue;
        countByRules(units.substr(others, start - others));
        m_words += *words;
        others = end;
    }
    countByRules(units.substr(others));
}

void WordCount::countByRules(std::u16string_view units)
{
    if (units.empty())
        return;
    UErrorCode status = U_ZERO_ERROR;
    ubrk_setText(m_iterator.get(), units.data(), int32_t(units.size()), &status);
    int32_t start = 0;
    for (int32_t end = ubrk_next(m_iterator.get()); end != UBRK_DONE;
         end = ubrk_next(m_iterator.get())) {
        take(units.substr(size_t(start), size_t(end - start)));
        start = end;
    }
}

/// Counts the words of a stretch that goes on behind its end, as far as they are sure, and answers
/// how far that is.
size_t WordCount::countBeforeCut(std::u16string_view units)
{
    size_t sure = units.size() - sureUnits;
    UErrorCode status = U_ZERO_ERROR;
    ubrk_setText(m_iterator.get(), units.data(), int32_t(units.size()), &status);
    const int32_t last = ubrk_preceding(m_iterator.get(), int32_t(sure) + 1);
    if (last > 0) {
        countByRules(units.substr(0, size_t(last)));
        return size_t(last);
    }
    // One word fills it all.
    if (U16_IS_TRAIL(units[sure]))
        --sure;
    take(units.substr(0, sure));
    m_inWord = true;
    return sure;
}

void WordCount::take(std::u16string_view word)
{
    const CharacterSet& counted = CharacterSet::alphanumeric();
    bool isWord = m_inWord && m_isWord;
    m_words -= isWord;
    for (size_t i = 0; i < word.size() && !isWord;) {
        char32_t character = 0;
        U16_NEXT(word.data(), i, word.size(), character);
        isWord = counted.contains(character);
    }
    m_words += isWord;
    m_isWord = isWord;
    m_inWord = false;
}

} // namespace quillory
