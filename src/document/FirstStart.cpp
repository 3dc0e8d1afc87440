#include "document/FirstStart.h"

#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"

#include <QDir>
#include <QFile>

namespace quillory {

namespace {

constexpr const char* definitions[] = {"ObjectiveC", "CSS", "Plist", "HTML", "Java",
                                       "JavaScript", "PHP", "XML",   "Text", "LaTeX"};
constexpr const char* themes[] = {"Default", "Discreet", "Fluffish", "Insomniac",
                                  "Solarized_Light"};

} // namespace

void populateApplicationSupport(const ApplicationFolders& folders, UserDefaults& defaults)
{
    if (defaults.value(keys::firstStartEver))
        return;
    const QString target = folders.applicationSupport;
    const QString source = folders.resources;
    QDir().mkpath(target);
    QFile::copy(source + QStringLiteral("/Encodings.plist"),
                target + QStringLiteral("/Encodings.plist"));
    const auto copyAll = [&](const QString& folder, auto& names) {
        QDir().mkpath(target + folder);
        for (const char* name : names) {
            const QString file = QStringLiteral("/%1.plist").arg(QLatin1StringView(name));
            QFile::copy(source + folder + file, target + folder + file);
        }
    };
    copyAll(QStringLiteral("/Definitions"), definitions);
    copyAll(QStringLiteral("/Themes"), themes);
    defaults.setValue(keys::firstStartEver, true);
}

} // namespace quillory
