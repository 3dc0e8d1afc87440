#include "app/ViewAppearance.h"

#include "document/DocumentEnvironment.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "view/TextViewWidget.h"

#include <QFontDatabase>

namespace quillory {

namespace {

constexpr int customFont = 4;      ///< the value of the user default "font" for a font by name
constexpr int smallestStored = 11; ///< points that the user default "fontSize" 0 stands for
constexpr int smallest = 4;        ///< points
constexpr int largest = 96;        ///< points

int pointSize(const QFont& font)
{
    return font.pointSize() > 0 ? font.pointSize() : smallestStored;
}

} // namespace

ViewAppearance::ViewAppearance(TextViewWidget& view, const DocumentEnvironment& environment)
    : m_view(view), m_environment(environment)
{
    connect(&view, &TextViewWidget::zoomRequested, this, &ViewAppearance::zoomBy);
    apply();
}

void ViewAppearance::apply()
{
    QFont zoomed = font();
    zoomed.setPointSize(std::clamp(pointSize(zoomed) + m_zoom, smallest, largest));
    if (zoomed != m_view.textFont())
        m_view.setTextFont(zoomed);
    if (wrapsLines() != m_view.wrapsLines())
        m_view.setWrapLines(wrapsLines());
}

void ViewAppearance::setZoom(int points)
{
    const int size = pointSize(font());
    m_zoom = std::clamp(points, smallest - size, largest - size);
    apply();
}

bool ViewAppearance::wrapsLines() const
{
    return m_environment.defaults.value(keys::wrapLines);
}

void ViewAppearance::setWrapLines(bool wrap)
{
    m_environment.defaults.setValue(keys::wrapLines, wrap);
    m_environment.notifications.post(notifications::preferencesDidChange);
}

QFont ViewAppearance::font() const
{
    const UserDefaults& defaults = m_environment.defaults;
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
