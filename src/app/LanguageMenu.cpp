#include "app/LanguageMenu.h"

#include "app/DocumentWindow.h"
#include "document/Document.h"
#include "document/DocumentEnvironment.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"

#include <QActionGroup>
#include <QDesktopServices>
#include <QMenu>

namespace quillory {

namespace {

QAction* addChoice(QMenu& menu, QActionGroup& group, QString name, bool isChosen)
{
    QAction* action = menu.addAction(name.replace(u'&', QStringLiteral("&&")));
    action->setActionGroup(&group);
    action->setCheckable(true);
    action->setChecked(isChosen);
    return action;
}

} // namespace

void fillLanguageMenu(QMenu& menu, DocumentWindow& window)
{
    auto* group = new QActionGroup(&menu);
    Document& document = window.document();
    const DefinitionList& list = document.syntaxColouring().definitions();
    for (const Definition& definition : list.arrangedObjects()) {
        const QString& title = definition.title();
        const QAction* action =
            addChoice(menu, *group, title, title == document.record().definitionTitle);
        QObject::connect(action, &QAction::triggered, &window,
                         [&document, title] { document.setDefinitionWithTitle(title); });
    }
}

void fillThemeMenu(QMenu& menu, DocumentWindow& window)
{
    auto* group = new QActionGroup(&menu);
    const DocumentEnvironment& environment = window.environment();
    const int selected = environment.defaults.value(keys::selectedTheme);
    int index = 0;
    for (const Theme& theme : window.document().syntaxColouring().themes().arrangedObjects()) {
        QString name = theme.name();
        const QAction* action =
            addChoice(menu, *group, name.replace(u'_', u' '), index == selected);
        QObject::connect(action, &QAction::triggered, &window, [&environment, index] {
            environment.defaults.setValue(keys::selectedTheme, index);
            environment.notifications.post(notifications::preferencesDidChange);
        });
        ++index;
    }
}

void showSyntaxFolder(DocumentWindow& window)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(window.environment().folders.applicationSupport));
}

} // namespace quillory
