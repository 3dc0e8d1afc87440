#pragma once

#include <QColor>

class QPalette;

namespace quillory {

/// What a text view is painted in where the overlay says nothing else.
struct TextViewColours
{
    QColor text;
    QColor background;
    QColor caret;
    QColor selection;         ///< behind selected text, which keeps its own colours
    QColor inactiveSelection; ///< the same while the view has not the focus

    /// Colours that fit a light or dark \a palette.
    static TextViewColours fromPalette(const QPalette& palette);

    bool operator==(const TextViewColours&) const = default;
};

} // namespace quillory
