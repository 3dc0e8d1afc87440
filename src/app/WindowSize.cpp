#include "app/WindowSize.h"

#include "app/DocumentWindow.h"
#include "view/TextViewWidget.h"

#include <QFontMetricsF>
#include <QScreen>
#include <QSettings>
#include <QStyle>

namespace quillory {

namespace {

constexpr int columns = 90;
constexpr int rows = 40;
constexpr int chrome = 64;          ///< pixels of menu bar and status line
constexpr double screenShare = 0.9; ///< of the screen that a window takes at most
const QString key = QStringLiteral("windowSize");

QSize sizeForText(const DocumentWindow& window)
{
    const QFontMetricsF metrics(window.view().textFont());
    const int bar = window.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return {int(metrics.horizontalAdvance(u'0') * columns) + 2 * bar +
                window.view().rulerRect().width(),
            int(metrics.lineSpacing() * rows) + chrome};
}

} // namespace

void applyInitialSize(DocumentWindow& window, const QSettings& state)
{
    const QSize stored = state.value(key).toSize();
    const QSize wanted = stored.isValid() ? stored : sizeForText(window);
    window.resize(wanted.boundedTo(window.screen()->availableSize() * screenShare));
}

void storeSize(const DocumentWindow& window, QSettings& state)
{
    if (!(window.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)))
        state.setValue(key, window.size());
}

} // namespace quillory
