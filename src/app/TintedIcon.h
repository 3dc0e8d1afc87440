#pragma once

#include <QIcon>

namespace quillory {

/// The drawing ":/icons/NAME.svg" with "currentColor" as the desktop's text of buttons has it, in
/// each mode, whenever it is painted: so it follows light and dark. Nothing is read before.
/// Paints nothing where there is no such drawing.
QIcon tintedIcon(const QString& name);

} // namespace quillory
