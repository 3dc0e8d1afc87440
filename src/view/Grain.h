#pragma once

class QPainter;
class QRect;

namespace quillory {

/// Lays a fine noise of four parts in a hundred over the part \a rect, in logical pixels, of what
/// is painted; it is the same for every part of the same widget.
void paintGrain(QPainter& painter, const QRect& rect);

} // namespace quillory
