#include "editing/DoubleClick.h"

#include "text/BracketMatching.h"
#include "text/TextReader.h"

namespace quillory {

std::optional<TextRange> bracketSpan(const TextSnapshot& text, TextOffset offset)
{
    const auto partner =
        kindClosedBy(text.at(offset)) ? matchingOpener(text, offset) : matchingCloser(text, offset);
    if (!partner)
        return {};
    const TextRange span = TextRange::between(*partner, offset);
    return TextRange{span.location, span.length + 1};
}

bool isBracket(const TextSnapshot& text, TextOffset offset)
{
    return kindClosedBy(text.at(offset)) || kindOpenedBy(text.at(offset));
}

TextRange wordSegment(const TextSnapshot& text, TextRange word, TextOffset offset)
{
    TextReader reader(text);
    const auto stops = [&](TextOffset at) {
        return reader.at(at) == u'.' || reader.at(at) == u':';
    };
    TextOffset start = std::min(offset, word.end());
    while (start > word.location && !stops(start - 1))
        --start;
    TextOffset end = std::max(offset + 1, start);
    while (end < word.end() && !stops(end))
        ++end;
    return TextRange::between(start, std::min(end, word.end()));
}

} // namespace quillory
