#pragma once

#include <QtGlobal>

namespace quillory {

// How large a ruler of line numbers is, and where in it a number stands. In points, which are
// logical pixels here.

inline constexpr double labelMargin = 5;        ///< on each side of a label
inline constexpr double minimumThickness = 22;  ///< of a ruler
inline constexpr double markerHeight = 13;      ///< of a marker's image
inline constexpr double markerMargin = 1;       ///< right of a marker's image
inline constexpr double thicknessTolerance = 1; ///< by which a ruler may differ from what it needs

/// How many digits the number of the last of \a lineCount lines has; at least 1.
int digitCount(qsizetype lineCount);

/// The whole points that a ruler needs whose widest label is \a labelWidth wide.
int requiredThickness(double labelWidth);

/// How far above the text's y 0 a ruler begins for which labelOffset() holds.
inline constexpr double rulerOrigin = 10;

/// From the y of a row of text to that of its label, the first counted from where the text begins
/// and the second from where the ruler does, rulerOrigin higher. It puts the middle of the label at
/// the middle of the row. A ruler that begins with the text, as one inside a scroll area does, has
/// to take rulerOrigin away, or its labels stand between two rows, or beside the next one.
double labelOffset(double rowHeight, double labelHeight);

} // namespace quillory
