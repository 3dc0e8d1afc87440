#include "editing/TextTransforms.h"

#include "text/CharacterSet.h"
#include "text/TextBuilder.h"
#include "text/TextReader.h"
#include "text/TextUnits.h"

namespace quillory {

namespace {

TextSnapshot trimmed(const TextSnapshot& string, const CharacterSet& characters)
{
    TextReader reader(string);
    TextRange kept = string.range();
    while (!kept.isEmpty()) {
        const char32_t first = reader.codePointAt(kept.location);
        if (!characters.contains(first))
            break;
        kept = TextRange::between(kept.location + unitsOf(first), kept.end());
    }
    while (!kept.isEmpty()) {
        const char32_t last = reader.codePointBefore(kept.end());
        if (!characters.contains(last))
            break;
        kept.length -= unitsOf(last);
    }
    return string.slice(kept);
}

/// Calls \a visit with the units of each piece, first to last.
template<class Visit>
void forEachUnits(const TextSnapshot& string, Visit&& visit)
{
    string.forEachPiece(string.range(),
                        [&](const TextPiece& piece) { std::visit(visit, piece.units); });
}

/// Where \a ranges of the text before \a edits lie in the text with them, when all that the edits
/// do is to delete.
std::vector<TextRange> afterDeletions(std::span<const TextRange> ranges,
                                      std::span<const TextEdit> edits)
{
    TextOffset deleted = 0; // by the edits that end before the offset
    const auto moved = [&](TextOffset offset) {
        while (!edits.empty() && edits.front().range.end() <= offset) {
            deleted += edits.front().range.length;
            edits = edits.subspan(1);
        }
        const TextOffset start = edits.empty() ? offset : edits.front().range.location;
        return std::min(offset, start) - deleted;
    };
    std::vector<TextRange> result;
    result.reserve(ranges.size());
    for (const TextRange range : ranges) {
        const TextOffset start = moved(range.location);
        result.push_back(TextRange::between(start, moved(range.end())));
    }
    return result;
}

} // namespace

TextSnapshot zapGremlinsInString(const TextSnapshot& string)
{
    return trimmed(string, CharacterSet::illegal());
}

TextSnapshot removeLineEndingsInString(const TextSnapshot& string)
{
    TextBuilder builder;
    forEachUnits(string, [&](auto units) {
        qsizetype begin = 0;
        for (qsizetype i = 0; i < units.size(); ++i) {
            const char16_t unit = unitsOf(units)[i];
            if (unit != u'\n' && unit != u'\r')
                continue;
            builder.append(units.sliced(begin, i - begin));
            begin = i + 1;
        }
        builder.append(units.sliced(begin));
    });
    return trimmed(builder.finish(), CharacterSet::newline());
}

TextSnapshot removeTabsInString(const TextSnapshot& string)
{
    // Spaces that only a tab stood between are side by side once it has gone.
    TextBuilder builder;
    qsizetype spaces = 0; // that were read last, and may go with those to come
    const auto appendSpaces = [&] { builder.append(u"   "_qs.left(std::exchange(spaces, 0))); };
    forEachUnits(string, [&](auto units) {
        qsizetype begin = 0;
        for (qsizetype i = 0; i < units.size(); ++i) {
            const char16_t unit = unitsOf(units)[i];
            const bool isSpace = unit == u' ';
            if (!isSpace && unit != u'\t') {
                if (spaces > 0)
                    appendSpaces();
                continue;
            }
            builder.append(units.sliced(begin, i - begin));
            begin = i + 1;
            spaces = (spaces + (isSpace ? 1 : 0)) % 4;
        }
        builder.append(units.sliced(begin));
    });
    appendSpaces();
    return trimmed(builder.finish(), CharacterSet::whitespaceAndNewline());
}

BlockEdit transformed(const TextSnapshot& text, std::span<const TextRange> ranges,
                      TextSnapshot (*function)(const TextSnapshot&))
{
    BlockEdit result;
    TextOffset shift = 0;
    for (const TextRange range : ranges) {
        const TextSnapshot before = text.slice(range);
        const TextSnapshot after = function(before);
        result.ranges.push_back({range.location + shift, after.length()});
        if (after == before)
            continue;
        result.edits.push_back({range, after});
        shift += after.length() - range.length;
    }
    return result;
}

BlockEdit withoutTrailingBlanks(const TextSnapshot& text, std::span<const TextRange> ranges)
{
    BlockEdit result;
    TextReader reader(text);
    qsizetype next = 0; // behind the lines that are done
    for (const TextRange range : ranges) {
        if (range.isEmpty())
            continue;
        const qsizetype last = text.lineAt(range.end()).value();
        for (next = std::max(next, text.lineAt(range.location).value()); next <= last; ++next) {
            const TextRange content = text.lineContent(LineIndex(next));
            TextOffset end = content.end();
            while (end > content.location && isSpaceOrTab(reader.at(end - 1)))
                --end;
            if (end < content.end())
                result.edits.push_back({TextRange::between(end, content.end()), TextSnapshot()});
        }
    }
    result.ranges = afterDeletions(ranges, result.edits);
    return result;
}

} // namespace quillory
