#pragma once

#include "foundation/PropertyList.h"

#include <QColor>
#include <QFont>
#include <optional>

namespace quillory {

struct TextViewColours;

/// What a ruler of line numbers looks like.
struct LineNumberLook
{
    QFont font = defaultFont();
    QColor textColor{107, 107, 107};            ///< white 0.42
    QColor alternateTextColor{255, 255, 255};   ///< of a label on a marker
    std::optional<QColor> backgroundColor = {}; ///< without one, the palette's for windows

    /// The desktop's smallest font, at most 9 points.
    static QFont defaultFont();

    /// One beside text in \a colours: on their background, with labels as they are by default where
    /// they can be read on it, and otherwise in a shade of the text's colour. Readable is a
    /// contrast of 3 to 1 (WCAG 2.1, 1.4.11).
    static LineNumberLook beside(const TextViewColours& colours);

    /// {"font", "textColor", "alternateTextColor", "backgroundColor"}, as texts in Qt's forms; a
    /// background that is not there is left out.
    PropertyList::Dictionary encode() const;
    /// Takes a dictionary, or the same values in that order in an array. What is missing, or means
    /// no font or colour, is as by default.
    static LineNumberLook decode(const PropertyList& archive);

    bool operator==(const LineNumberLook&) const = default;
};

} // namespace quillory
