#include "editing/BlockEdit.h"

namespace quillory {

namespace {

constexpr size_t manyEdits = 20'000; // some milliseconds' worth

} // namespace

TextEdit wholeEdit(const TextSnapshot& text, const TextSnapshot& after, TextOffset first,
                   TextOffset last)
{
    const TextOffset end = after.length() - (text.length() - last);
    return {TextRange::between(first, last), after.slice(TextRange::between(first, end))};
}

void joinManyEdits(BlockEdit& block, const TextSnapshot& text)
{
    if (block.edits.size() <= manyEdits)
        return;
    block.whole = wholeEdit(text, text.replacing(block.edits), block.edits.front().range.location,
                            block.edits.back().range.end());
}

} // namespace quillory
