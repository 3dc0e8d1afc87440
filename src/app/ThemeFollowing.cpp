#include "app/ThemeFollowing.h"

#include "document/DocumentEnvironment.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "syntax/Theme.h"

#include <QColor>
#include <QScopedValueRollback>

namespace quillory {

namespace {

ThemeList themesOf(const ApplicationFolders& folders)
{
    ThemeList themes;
    const QString shipped = folders.resources + QStringLiteral("/Themes");
    themes.load(folders.applicationSupport + QStringLiteral("/Themes"), 0, shipped);
    return themes;
}

bool isDark(const Theme& theme)
{
    const Colour ground = theme.plainColours().background;
    return QColor::fromRgbF(ground.red, ground.green, ground.blue).lightnessF() < 0.5F;
}

} // namespace

ThemeFollowing::ThemeFollowing(const DocumentEnvironment& environment) : m_environment(environment)
{
    connect(&m_scheme, &DesktopScheme::changed, this, &ThemeFollowing::selectForScheme);
    connect(&environment.defaults, &UserDefaults::changed, this, &ThemeFollowing::noteWritten);
}

void ThemeFollowing::start()
{
    m_started = true;
    if (m_environment.defaults.value(keys::themeFollowsDesktop))
        m_scheme.follow();
}

void ThemeFollowing::noteWritten(QLatin1StringView key)
{
    const auto is = [key](const auto& named) { return key == QLatin1StringView(named.name); };
    if (!m_started || m_selecting || !m_environment.defaults.value(keys::themeFollowsDesktop))
        return;
    if (is(keys::themeFollowsDesktop)) {
        adoptSelected([](const Theme& theme) { return isDark(theme); });
        m_scheme.follow();
    } else if (is(keys::selectedTheme)) {
        adoptSelected([this](const Theme&) { return m_scheme.isDark(); });
    } else if (is(keys::lightTheme) || is(keys::darkTheme)) {
        selectForScheme();
    }
}

void ThemeFollowing::selectForScheme()
{
    UserDefaults& defaults = m_environment.defaults;
    if (!defaults.value(keys::themeFollowsDesktop))
        return;
    const QString name = defaults.value(m_scheme.isDark() ? keys::darkTheme : keys::lightTheme);
    const int index = themesOf(m_environment.folders).indexOf(name);
    if (index < 0 || index == defaults.value(keys::selectedTheme))
        return;
    const QScopedValueRollback<bool> selecting(m_selecting, true);
    defaults.setValue(keys::selectedTheme, index);
    m_environment.notifications.post(notifications::preferencesDidChange);
}

/// Makes the selected theme the one for dark, or for light.
void ThemeFollowing::adoptSelected(const std::function<bool(const Theme&)>& isForDark)
{
    UserDefaults& defaults = m_environment.defaults;
    const ThemeList themes = themesOf(m_environment.folders);
    const int index = defaults.value(keys::selectedTheme);
    if (index < 0 || size_t(index) >= themes.arrangedObjects().size())
        return;
    const Theme& selected = themes.arrangedObjects()[size_t(index)];
    const QScopedValueRollback<bool> selecting(m_selecting, true);
    defaults.setValue(isForDark(selected) ? keys::darkTheme : keys::lightTheme, selected.name());
}

} // namespace quillory
