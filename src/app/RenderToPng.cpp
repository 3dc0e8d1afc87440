#include "app/RenderToPng.h"

#include <QPixmap>
#include <QTimer>
#include <QWidget>

namespace quillory {

namespace {

/// Milliseconds in which a window lays out and fetches its icons; less than what a new document
/// waits before it shows its settings.
constexpr int settlingTime = 200;

} // namespace

void renderToPng(QWidget& window, const QString& path, const std::function<void(bool)>& done)
{
    QTimer::singleShot(settlingTime, &window, [&window, path, done] {
        const bool written = window.grab().save(path, "PNG");
        if (!written)
            qWarning("quillory: the picture %s cannot be written; name another place",
                     qUtf8Printable(path));
        done(written);
    });
}

} // namespace quillory
