#include "app/ViewAppearance.h"

#include "document/DocumentEnvironment.h"
#include "foundation/UserDefaults.h"
#include "syntax/FontChoice.h"
#include "syntax/SyntaxColouring.h"
#include "view/TextViewWidget.h"

#include <QFontDatabase>

namespace quillory {

namespace {

constexpr int smallest = 4; ///< points
constexpr int largest = 96; ///< points

QColor toQColor(const Colour& colour)
{
    return QColor::fromRgbF(colour.red, colour.green, colour.blue, colour.alpha);
}

/// For a window that has not the keyboard.
QColor faded(QColor colour)
{
    colour.setAlphaF(colour.alphaF() * 0.6F);
    return colour;
}

} // namespace

ViewAppearance::ViewAppearance(TextViewWidget& view, const DocumentEnvironment& environment,
                               const SyntaxColouring& colouring)
    : m_view(view), m_environment(environment), m_colouring(colouring)
{
    connect(&colouring, &SyntaxColouring::plainColoursChanged, this, &ViewAppearance::applyColours);
    connect(&view, &TextViewWidget::zoomRequested, this, &ViewAppearance::zoomBy);
    apply();
}

void ViewAppearance::apply()
{
    QFont zoomed = font();
    zoomed.setPointSize(std::clamp(zoomed.pointSize() + m_zoom, smallest, largest));
    if (zoomed != m_view.textFont())
        m_view.setTextFont(zoomed);
    const bool wraps = m_environment.defaults.value(keys::wrapLines);
    if (wraps != m_view.wrapsLines())
        m_view.setWrapLines(wraps);
    applyColours();
}

/// Without a theme the text is shown in the desktop's colours.
void ViewAppearance::applyColours()
{
    std::optional<TextViewColours> colours;
    if (const std::optional<PlainColours>& theme = m_colouring.plainColours()) {
        const QColor selection = toQColor(theme->selection);
        colours = {toQColor(theme->text), toQColor(theme->background),
                   toQColor(theme->insertionPoint), selection, faded(selection)};
    }
    m_view.setColours(colours);
}

void ViewAppearance::setZoom(int points)
{
    const int size = font().pointSize();
    m_zoom = std::clamp(points, smallest - size, largest - size);
    apply();
}

QFont ViewAppearance::font() const
{
    return fontOf(m_environment.defaults);
}

QFont ViewAppearance::fontOf(const UserDefaults& defaults)
{
    const FontChoice choice = FontChoice::from(defaults);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (QFontDatabase::hasFamily(choice.name))
        font = QFont(choice.name);
    font.setStyleHint(QFont::Monospace);
    font.setPointSize(choice.pointSize);
    return font;
}

} // namespace quillory
