#include "editing/Indentation.h"

#include "text/TextReader.h"

namespace quillory {

namespace {

constexpr TextOffset mostSpaces = 4;

constexpr bool isBreak(char16_t unit)
{
    return unit == u'\n' || unit == u'\r';
}

/// Whether a line ends behind the unit at \a offset. A CR LF is not taken apart.
bool endsLine(TextReader& reader, TextOffset offset)
{
    const char16_t unit = reader.at(offset);
    const bool opensPair =
        unit == u'\r' && offset + 1 < reader.length() && reader.at(offset + 1) == u'\n';
    return isBreak(unit) && !opensPair;
}

/// The length of \a range without a break at its end, unless it is nothing but that.
TextOffset lengthWithoutLastBreak(TextReader& reader, TextRange range)
{
    return range.length - (range.length > 1 && isBreak(reader.at(range.end() - 1)) ? 1 : 0);
}

/// How many units of indentation to take at \a offset: a tab, or at most \a most spaces.
TextOffset indentationAt(TextReader& reader, TextOffset offset, TextOffset most)
{
    if (offset < reader.length() && reader.at(offset) == u'\t')
        return 1;
    most = std::min({most, mostSpaces, reader.length() - offset});
    TextOffset spaces = 0;
    while (spaces < most && reader.at(offset + spaces) == u' ')
        ++spaces;
    return spaces;
}

} // namespace

BlockEdit indented(const TextSnapshot& text, std::span<const TextRange> ranges)
{
    const TextSnapshot tab(u"\t");
    TextReader reader(text);
    BlockEdit result;
    for (const TextRange range : ranges) {
        const TextOffset shift = TextOffset(result.edits.size());
        result.edits.push_back({{range.location, 0}, tab});
        const TextOffset end = range.location + lengthWithoutLastBreak(reader, range);
        for (TextOffset offset = range.location; offset < end; ++offset) {
            if (endsLine(reader, offset))
                result.edits.push_back({{offset + 1, 0}, tab});
        }
        const TextOffset count = TextOffset(result.edits.size()) - shift;
        if (range.isEmpty())
            result.ranges.push_back({range.location + shift + count, 0});
        else
            result.ranges.push_back({range.location + shift, range.length + count});
    }
    return result;
}

BlockEdit unindented(const TextSnapshot& text, std::span<const TextRange> ranges)
{
    TextReader reader(text);
    BlockEdit result;
    TextOffset taken = 0; // in all ranges so far
    TextOffset done = 0;  // where the last of it ended
    for (const TextRange selected : ranges) {
        // Spaces may have been taken from behind the range before.
        const TextOffset start = std::max(selected.location, done);
        const TextRange range = TextRange::between(start, std::max(start, selected.end()));
        const TextOffset takenBefore = taken;
        const auto take = [&](TextOffset offset, TextOffset length) {
            if (length == 0)
                return;
            result.edits.push_back({{offset, length}, TextSnapshot()});
            taken += length;
            done = offset + length;
        };
        if (!range.isEmpty()) {
            const TextOffset last = range.end() - 1;
            take(range.location, indentationAt(reader, range.location, last - takenBefore));
            for (TextOffset offset = range.location; offset < last; ++offset) {
                if (endsLine(reader, offset))
                    take(offset + 1, indentationAt(reader, offset + 1, last - offset - 1));
            }
        }
        const TextOffset length = lengthWithoutLastBreak(reader, range) - (taken - takenBefore);
        result.ranges.push_back({start - takenBefore, std::max<TextOffset>(0, length)});
    }
    return result;
}

} // namespace quillory
