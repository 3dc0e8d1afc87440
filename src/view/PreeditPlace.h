#pragma once

#include <QPointF>
#include <QRect>
#include <optional>

namespace quillory {

class TextViewport;

/// Where the unit at \a index of the composed text begins, in the viewport: any x, and the top of
/// its row; none when that row is not in sight.
std::optional<QPointF> preeditPoint(TextViewport& viewport, int index);

/// The caret before the unit at \a index of the composed text, in the viewport; empty when its row
/// is not in sight.
QRect preeditCaretRect(TextViewport& viewport, int index);

/// The place between two characters of the composed text nearest to \a point; none when the point
/// is not on it.
std::optional<int> preeditIndexAt(TextViewport& viewport, QPoint point);

} // namespace quillory
