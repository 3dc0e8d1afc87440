#include "syntax/OpenSpans.h"

#include "text/TextSearch.h"

namespace quillory {

namespace {

bool isOpen(const TextSnapshot& text, TextOffset offset, const QString& begin, const QString& end)
{
    if (begin.isEmpty())
        return false;
    bool open = false;
    for (TextOffset at = 0; at <= offset;) {
        const QString& sought = open ? end : begin;
        const TextOffset found = find(text, sought, TextRange::between(at, offset));
        if (found < 0)
            break;
        at = found + sought.size();
        open = !open;
    }
    return open;
}

} // namespace

OpenSpans openSpansBefore(const TextSnapshot& text, TextOffset offset, const ColouringState& state)
{
    return {
        isOpen(text, offset, state.beginInstruction, state.endInstruction),
        isOpen(text, offset, state.beginFirstMultiLineComment, state.endFirstMultiLineComment),
        isOpen(text, offset, state.beginSecondMultiLineComment, state.endSecondMultiLineComment)};
}

} // namespace quillory
