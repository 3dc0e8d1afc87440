#include "app/LinkLabel.h"

#include "view/Contrast.h"

#include <QApplication>
#include <QEvent>

namespace quillory {

namespace {

constexpr double leastContrast = 4.5; ///< of links to the window (WCAG 2.1, 1.4.3)

} // namespace

LinkLabel::LinkLabel(QString html, QWidget* parent) : QLabel(parent), m_html(std::move(html))
{
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::LinksAccessibleByKeyboard | Qt::LinksAccessibleByMouse);
    takeColour();
}

void LinkLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        takeColour();
}

/// Many dark palettes leave links in the dark blue that is meant for white paper; and links are
/// drawn in the application's colour, whatever the widget's palette says.
void LinkLabel::takeColour()
{
    const QPalette desktop = QApplication::palette(this);
    const QColor link =
        lightenedFor(desktop.color(QPalette::Window), desktop.color(QPalette::Link), leastContrast);
    setText(QStringLiteral("<style>a { color: %1; }</style>").arg(link.name()) + m_html);
}

} // namespace quillory
