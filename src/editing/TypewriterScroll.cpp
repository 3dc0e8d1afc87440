#include "editing/TypewriterScroll.h"

namespace quillory {

namespace {

constexpr double anchorShare = 0.3;

TextOffset characterBeforeEnd(TextRange selection)
{
    return std::max<TextOffset>(0, selection.end() - 1);
}

} // namespace

int anchorHeight(int visibleHeight)
{
    return int(visibleHeight * anchorShare);
}

std::optional<AnchoredRow> constrainScrollRow(const TextSnapshot& text, TextRange selection,
                                              TypedKey key)
{
    if (key == TypedKey::Space)
        return std::nullopt;
    if (key == TypedKey::Other)
        return AnchoredRow{characterBeforeEnd(selection), false};
    // The break that was typed, though the new line may have been indented since.
    const TextOffset start = text.lineStart(text.lineAt(selection.end()));
    return AnchoredRow{std::max<TextOffset>(0, start - 1), true};
}

AnchoredRow simpleScrollRow(TextRange selection)
{
    return {characterBeforeEnd(selection), true};
}

} // namespace quillory
