#include "app/TitleBarDecoration.h"

#include "app/DecorativeViews.h"
#include "app/DocumentWindow.h"
#include "document/DocumentEnvironment.h"
#include "foundation/NotificationCenter.h"
#include "view/Contrast.h"
#include "view/TextViewWidget.h"

#include <QEvent>
#include <array>

namespace quillory {

namespace {

constexpr std::array<float, 4> shares{0.35F, 0.25F, 0.15F, 0.08F}; ///< of the theme
constexpr double leastContrast = 4.5;                              ///< WCAG 2.1, for text
constexpr float lineShare = 0.2F;                                  ///< of the text's colour

QColor mixed(const QColor& a, const QColor& b, float share)
{
    const auto mix = [share](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()),
                            mix(a.blueF(), b.blueF()));
}

} // namespace

TitleBarDecoration::TitleBarDecoration(DocumentWindow& window, QWidget& buttons, QWidget& content)
    : QObject(&window), m_window(window), m_buttons(buttons), m_content(content),
      m_ground(new GradientView(&buttons)), m_leadingLine(new LineView(Qt::Vertical, &buttons)),
      m_edge(new LineView(Qt::Horizontal, &content))
{
    m_leadingLine->lower();
    m_ground->lower();
    m_edge->raise();
    buttons.installEventFilter(this);
    content.installEventFilter(this);
    connect(&window.view(), &TextViewWidget::coloursChanged, this, &TitleBarDecoration::renew);
    connect(&window.environment().notifications, &NotificationCenter::posted, this,
            [this](const QString& name) {
                if (name == notifications::windowDidChangeScreen)
                    renew();
            });
    place();
    renew();
}

QColor TitleBarDecoration::tint(const QColor& ground, const QColor& theme, const QColor& ink)
{
    for (const float share : shares) {
        QColor tinted = mixed(ground, theme, share);
        if (contrast(tinted, ink) >= leastContrast)
            return tinted;
    }
    return ground;
}

void TitleBarDecoration::renew()
{
    const QPalette palette = m_buttons.palette();
    const QColor ground = palette.color(QPalette::Window);
    const QColor line = mixed(ground, palette.color(QPalette::WindowText), lineShare);
    QColor clear = ground;
    clear.setAlpha(0);
    m_ground->setColours(clear, tint(ground, m_window.view().colours().background,
                                     palette.color(QPalette::ButtonText)));
    m_leadingLine->setColour(line);
    m_edge->setColour(line);
}

void TitleBarDecoration::place()
{
    m_ground->setGeometry(m_buttons.rect());
    const bool isMirrored = m_buttons.layoutDirection() == Qt::RightToLeft;
    constexpr int margin = 4; // above and below, in logical pixels
    m_leadingLine->setGeometry(isMirrored ? m_buttons.width() - 1 : 0, margin, 1,
                               std::max(0, m_buttons.height() - 2 * margin));
    m_edge->setGeometry(0, 0, m_content.width(), 1);
}

bool TitleBarDecoration::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::LayoutDirectionChange:
        place();
        break;
    case QEvent::PaletteChange:
        if (watched == &m_buttons)
            renew();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quillory
