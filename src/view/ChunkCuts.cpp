#include "view/ChunkCuts.h"

#include "text/TextBoundary.h"
#include "text/TextReader.h"

#include <QChar>

namespace quillory {

namespace {
constexpr TextOffset reach = 100;
}

TextOffset unitsToCut(const TextSnapshot& text, TextRange range, TextOffset offset)
{
    TextReader reader(text);
    const TextOffset limit = std::max(range.location + 1, offset - reach);
    for (const char16_t blank : {u'\t', u' '}) {
        for (TextOffset cut = offset; cut >= limit; --cut) {
            // A mark may stand on a blank.
            const bool beforeMark = cut < range.end() && QChar(reader.at(cut)).isMark();
            if (reader.at(cut - 1) == blank && !beforeMark)
                return offset - cut;
        }
    }
    const TextOffset cut = characterStart(text, offset);
    if (cut >= limit)
        return offset - cut;
    const bool splitsPair = offset < range.end() && QChar::isLowSurrogate(reader.at(offset)) &&
                            QChar::isHighSurrogate(reader.at(offset - 1));
    return splitsPair ? 1 : 0;
}

} // namespace quillory
