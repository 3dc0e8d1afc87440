#pragma once

#include <QPixmap>

namespace quillory {

/// A tile of faint grey noise to be laid over a surface, for a screen of \a devicePixelRatio. It is
/// made once and remembered.
QPixmap grainTile(double devicePixelRatio);

} // namespace quillory
