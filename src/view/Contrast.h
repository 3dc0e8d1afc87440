#pragma once

#include <QColor>

namespace quillory {

/// The contrast between two opaque colours by WCAG 2.1, from 1 to 21.
double contrast(const QColor& a, const QColor& b);

/// \a colour made darker until it has a contrast of \a least to white; as it is where it has.
QColor darkenedForPaper(QColor colour, double least);

/// \a colour, which is not black, made lighter until it has a contrast of \a least to \a ground, or
/// is white; as it is where it has, or where \a ground is the lighter one.
QColor lightenedFor(const QColor& ground, QColor colour, double least);

} // namespace quillory
