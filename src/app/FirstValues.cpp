#include "app/FirstValues.h"

#include "app/DesktopScheme.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"
#include "syntax/Theme.h"

namespace quillory {

namespace {

constexpr int pageOfPages = 3; ///< "Page 2 of 5"

} // namespace

/// Brackets are not closed: "<" is one of them also where it compares, and typing a closer does not
/// step over the one that is there.
void registerFirstValues(const ApplicationFolders& folders, UserDefaults& defaults)
{
    defaults.registerDefault(keys::highlight, true);
    defaults.registerDefault(keys::indentNewLinesBraces, true);
    defaults.registerDefault(keys::restoresWindows, true);
    defaults.registerDefault(keys::autosaveInPlace, true);
    defaults.registerDefault(keys::prefsPrintNumbers, 1);
    defaults.registerDefault(keys::prefsPrintNumbersTag, pageOfPages);
    defaults.registerDefault(keys::lightTheme, QStringLiteral("Default"));
    defaults.registerDefault(keys::darkTheme, QStringLiteral("Insomniac"));
    if (defaults.value(keys::firstStartEver) || defaults.isWritten(keys::selectedTheme) ||
        !DesktopScheme::isPaletteDark())
        return;
    // The user's folder is about to be filled with these.
    const QString shipped = folders.resources + QStringLiteral("/Themes");
    ThemeList themes;
    themes.load(shipped, 0, shipped);
    if (const int dark = themes.indexOf(defaults.value(keys::darkTheme)); dark >= 0)
        defaults.setValue(keys::selectedTheme, dark);
}

} // namespace quillory
