#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace quillory {

/// Draws \a window, once it has settled, into the PNG file at \a path; \a done learns whether the
/// file was written.
void renderToPng(QWidget& window, const QString& path, const std::function<void(bool)>& done);

} // namespace quillory
