#include "editing/SmartInsertDelete.h"

#include "editing/QPTextView.h"
#include "text/TextReader.h"

#include <QChar>
#include <string_view>

namespace quillory {

namespace {

constexpr char32_t lineEdge = U'\n'; // stands for the text's ends, too

char32_t before(TextReader& reader, TextOffset offset)
{
    return offset > 0 ? reader.codePointBefore(offset) : lineEdge;
}

char32_t after(TextReader& reader, TextOffset offset)
{
    return offset < reader.length() ? reader.codePointAt(offset) : lineEdge;
}

bool isLineEdge(char32_t character)
{
    return character == U'\n' || character == U'\r' || character == 0x2028 || character == 0x2029;
}

bool isQuote(char32_t character)
{
    const auto category = QChar::category(character);
    return character == U'"' || character == U'\'' || character == U'`' ||
           category == QChar::Punctuation_InitialQuote || category == QChar::Punctuation_FinalQuote;
}

bool opens(char32_t character)
{
    return QChar::category(character) == QChar::Punctuation_Open || isQuote(character);
}

bool closes(char32_t character)
{
    return QChar::category(character) == QChar::Punctuation_Close || isQuote(character) ||
           std::u32string_view(U".,;:!?").find(character) != std::u32string_view::npos;
}

bool hasSpacesBetweenWords(QChar::Script script)
{
    switch (script) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
        return false;
    default:
        return true;
    }
}

/// Whether \a character is of a word of such a script.
bool isOfWord(char32_t character)
{
    return (QChar::isLetterOrNumber(character) || QChar::isMark(character) || character == U'_') &&
           hasSpacesBetweenWords(QChar::script(character));
}

TextRange smartDeleteRange(TextReader& reader, TextRange range)
{
    const char32_t left = before(reader, range.location);
    const char32_t right = after(reader, range.end());
    if (right == U' ' && (left == U' ' || isLineEdge(left) || opens(left)))
        return {range.location, range.length + 1};
    if (left != U' ' || !(isLineEdge(right) || closes(right)))
        return range;
    const char32_t further = before(reader, range.location - 1);
    const bool isAlone = further != U' ' && further != U'\t' && !isLineEdge(further);
    return isAlone ? TextRange{range.location - 1, range.length + 1} : range;
}

} // namespace

std::vector<TextRange> smartDeleteRanges(const TextSnapshot& text,
                                         std::span<const Selection> selections)
{
    TextReader reader(text);
    std::vector<TextRange> ranges;
    for (const Selection& selection : selections) {
        const TextRange range = selection.range();
        if (range.isEmpty())
            continue;
        if (!ranges.empty() && ranges.back().end() + 1 == range.location &&
            reader.at(ranges.back().end()) == u' ')
            ranges.back() = TextRange::between(ranges.back().location, range.end());
        else
            ranges.push_back(range);
    }
    for (TextRange& range : ranges)
        range = smartDeleteRange(reader, range);
    return ranges;
}

TextSnapshot smartlyInserted(const TextSnapshot& text, TextRange range, const TextSnapshot& word)
{
    if (word.isEmpty())
        return word;
    TextReader around(text);
    TextReader inside(word);
    const TextSnapshot space(u" ");
    std::vector<TextEdit> edits;
    if (isOfWord(before(around, range.location)) && isOfWord(after(inside, 0)))
        edits.push_back({{0, 0}, space});
    if (isOfWord(before(inside, word.length())) && isOfWord(after(around, range.end())))
        edits.push_back({{word.length(), 0}, space});
    return word.replacing(edits);
}

void smartDelete(QPTextView& editor, const QString& actionName)
{
    const std::vector<Selection>& selections = editor.selections();
    const std::vector<TextRange> ranges = smartDeleteRanges(editor.string(), selections);
    if (ranges.empty())
        return;
    std::vector<TextEdit> edits;
    edits.reserve(ranges.size());
    for (const TextRange range : ranges)
        edits.push_back({range, TextSnapshot()});
    std::vector<Selection> after;
    size_t primary = 0;
    TextOffset gone = 0;
    auto next = ranges.begin();
    for (const Selection& selection : selections) {
        if (selection == editor.primarySelection())
            primary = after.size();
        const TextOffset start = selection.range().location;
        for (; next != ranges.end() && next->end() <= start; ++next)
            gone += next->length;
        const bool goesAlong = next != ranges.end() && next->location < start;
        after.push_back(Selection::caret((goesAlong ? next->location : start) - gone));
    }
    editor.replaceCharacters(edits, std::move(after), primary, actionName);
}

} // namespace quillory
