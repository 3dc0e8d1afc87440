#include "app/ViewAppearance.h"

#include "document/DocumentEnvironment.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "syntax/SyntaxColouring.h"
#include "view/TextViewWidget.h"

#include <QFontDatabase>

namespace quillory {

namespace {

constexpr int customFont = 4;      ///< the value of the user default "font" for a font by name
constexpr int smallestStored = 11; ///< points that the user default "fontSize" 0 stands for
constexpr int smallest = 4;        ///< points
constexpr int largest = 96;        ///< points

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

int pointSize(const QFont& font)
{
    return font.pointSize() > 0 ? font.pointSize() : smallestStored;
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
    zoomed.setPointSize(std::clamp(pointSize(zoomed) + m_zoom, smallest, largest));
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
    const int size = pointSize(font());
    m_zoom = std::clamp(points, smallest - size, largest - size);
    apply();
}

QFont ViewAppearance::font() const
{
    return fontOf(m_environment.defaults);
}

QFont ViewAppearance::fontOf(const UserDefaults& defaults)
{
    const QString name = defaults.value(keys::customFontName);
    if (defaults.value(keys::font) != customFont || name.isEmpty())
        return QFontDatabase::systemFont(QFontDatabase::FixedFont);
    QFont font(name, int(defaults.value(keys::fontSize)) + smallestStored);
    font.setStyleHint(QFont::Monospace);
    return font;
}

void ViewAppearance::setFont(const QFont& font)
{
    UserDefaults& defaults = m_environment.defaults;
    defaults.setValue(keys::customFontName, font.family());
    defaults.setValue(keys::font, customFont);
    defaults.setValue(keys::fontSize, pointSize(font) - smallestStored);
    m_environment.notifications.post(notifications::preferencesDidChange);
}

} // namespace quillory
