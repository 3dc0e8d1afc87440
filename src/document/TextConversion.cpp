#include "document/TextConversion.h"

#include "text/TextDecoder.h"
#include "text/TextEncoder.h"

namespace quillory {

std::optional<TextSnapshot> thereAndBack(const TextSnapshot& text, StringEncoding encoding)
{
    const std::optional<QByteArray> bytes = encoded(text, encoding);
    return bytes ? decode(ByteBuffer(*bytes), encoding) : std::nullopt;
}

std::vector<Selection> onSameLines(const std::vector<Selection>& selections,
                                   const TextSnapshot& before, const TextSnapshot& after)
{
    const auto moved = [&](TextOffset offset) {
        const LineIndex line = before.lineAt(offset);
        if (line.value() >= after.lineCount())
            return after.length();
        const TextRange content = after.lineContent(line);
        return content.location + std::min(offset - before.lineStart(line), content.length);
    };
    std::vector<Selection> result;
    result.reserve(selections.size());
    for (const Selection& selection : selections)
        result.push_back({moved(selection.anchor), moved(selection.head)});
    return result;
}

} // namespace quillory
