#include "syntax/OpenSpans.h"

#include "syntax/LineFold.h"
#include "syntax/WrappedScript.h"

namespace quillory {

namespace {

SpanState stateBefore(const TextSnapshot& text, TextOffset offset, const SpanLines& lines)
{
    if (lines.isIdle() || offset == 0)
        return 0;
    LineFold fold(lines, text, true);
    fold.addUpTo(text.root(), offset);
    return fold.table().after(0);
}

} // namespace

OpenSpans openSpansBefore(const TextSnapshot& text, TextOffset offset, const ColouringState& state)
{
    const SpanState instructions = stateBefore(text, offset, SpanLines::instructions(state));
    const SpanState comments = stateBefore(text, offset, SpanLines::comments(state));
    const auto comment = [&](int pair) -> OpenSpan {
        if (SpanLines::isWaiting(comments, pair)) {
            WrappedScript wrapped(text, state.letterCharacterSet);
            if (const TextOffset letter = wrapped.endTagAfter(offset); letter >= 0)
                return {false, letter - offset};
        }
        return {SpanLines::isOpen(comments, pair), 0};
    };
    return {{SpanLines::isOpen(instructions, 0), 0}, comment(0), comment(1)};
}

} // namespace quillory
