#pragma once

#include <functional>

class QMenu;

namespace quillory {

/// Has \a fill add the changing part of \a menu each time that it opens. What is in the menu now
/// stays; what \a fill added before is deleted, submenus and action groups among it.
void refillOnShow(QMenu& menu, const std::function<void(QMenu&)>& fill);

} // namespace quillory
