#pragma once

#include <QRect>
#include <optional>

namespace quillory {

class TextViewport;

/// The caret before the unit at \a index of the composed text, in the viewport; empty when its row
/// is not in sight.
QRect preeditCaretRect(TextViewport& viewport, int index);

/// The place between two characters of the composed text nearest to \a point; none when the point
/// is not on it.
std::optional<int> preeditIndexAt(TextViewport& viewport, QPoint point);

} // namespace quillory
