#include "app/SpellingLanguageMenu.h"

#include "app/DocumentWindow.h"
#include "app/MenuTable.h"
#include "app/SpellingAids.h"
#include "document/DocumentEnvironment.h"
#include "editing/spelling/SpellingLanguage.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"

#include <QActionGroup>
#include <QMenu>
#include <algorithm>

namespace quillory {

namespace {

void addNote(QMenu& menu, const char* text)
{
    menu.addAction(menuText(text))->setEnabled(false);
}

void addChoice(QMenu& menu, QActionGroup& group, const DocumentEnvironment& environment,
               QString name, const QString& tag, bool isChosen)
{
    QAction* const action = menu.addAction(name.replace(u'&', QStringLiteral("&&")));
    action->setActionGroup(&group);
    action->setCheckable(true);
    action->setChecked(isChosen);
    QObject::connect(action, &QAction::triggered, &menu, [&environment, tag] {
        environment.defaults.setValue(keys::spellingLanguage, tag);
        environment.notifications.post(notifications::preferencesDidChange);
    });
}

} // namespace

void fillSpellingLanguageMenu(QMenu& menu, DocumentWindow& window)
{
    SpellChecker& checker = window.spelling().checker();
    if (!checker.knowsLanguages()) {
        QAction* const placeholder = menu.addAction(menuText(ENTRY("Looking for Dictionaries…")));
        placeholder->setEnabled(false);
        QObject::connect(&checker, &SpellChecker::languagesFound, placeholder, [&menu, &window] {
            menu.clear();
            fillSpellingLanguageMenu(menu, window);
        });
        checker.findLanguages();
        return;
    }
    if (checker.languages().isEmpty()) {
        addNote(menu, ENTRY("No dictionaries are installed."));
        addNote(menu, ENTRY("Install a Hunspell dictionary package for your language."));
        return;
    }
    const DocumentEnvironment& environment = window.environment();
    const bool follows = environment.defaults.value(keys::spellingLanguage).isEmpty();
    auto* group = new QActionGroup(&menu);
    addChoice(menu, *group, environment, menuText(ENTRY("Language of the Desktop")), {}, follows);
    menu.addSeparator();
    QList<std::pair<QString, QString>> choices; // names and tags
    for (const QString& tag : checker.languages())
        choices.append({languageName(tag), tag});
    std::sort(choices.begin(), choices.end(), [](const auto& a, const auto& b) {
        return QString::localeAwareCompare(a.first, b.first) < 0;
    });
    for (const auto& [name, tag] : choices)
        addChoice(menu, *group, environment, name, tag, !follows && tag == checker.language());
}

} // namespace quillory
