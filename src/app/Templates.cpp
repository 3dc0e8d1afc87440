#include "app/Templates.h"

#include "app/DocumentController.h"
#include "app/RefillingMenu.h"
#include "app/SaveFlow.h"
#include "app/UserQuestions.h"
#include "document/Document.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QMenu>
#include <QPointer>
#include <QUrl>

namespace quillory {

namespace {

constexpr qsizetype longestMenu = 200; ///< entries
constexpr int deepest = 5;             ///< folders in folders

QString tr(const char* text)
{
    return QCoreApplication::translate("Templates", text);
}

QString folderOf(const DocumentWindow& window)
{
    return window.environment().folders.applicationSupport + QStringLiteral("/Templates");
}

QString label(QString name)
{
    return name.replace(u'&', QStringLiteral("&&"));
}

void addFolder(QMenu& menu, DocumentWindow& window, const QString& folder, int depth)
{
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Readable,
                                   QDir::DirsFirst | QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo& entry : entries.first(std::min(longestMenu, entries.size()))) {
        const QString path = entry.filePath();
        if (!entry.isDir()) {
            QObject::connect(menu.addAction(label(entry.fileName())), &QAction::triggered, &window,
                             [&window, path] { newFromTemplate(path, window); });
        } else if (depth < deepest) {
            QMenu* submenu = menu.addMenu(label(entry.fileName()));
            refillOnShow(*submenu, [&window, path, depth](QMenu& opening) {
                addFolder(opening, window, path, depth + 1);
            });
        }
    }
}

void openFolder(DocumentWindow& window)
{
    const QString folder = folderOf(window);
    if (!QDir().mkpath(folder) || !QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        window.questions().tell(&window, tr("The folder of the templates cannot be shown."),
                                tr("It is “%1”.").arg(QDir::toNativeSeparators(folder)), [] {});
}

/// Gives an untouched document the text, and its form.
void fill(Document& document, ReadResult result, const QString& path)
{
    // Nothing leads back to the file.
    result.path.clear();
    document.adoptBeginning(result);
    document.finishLoading({result, 0});
    document.acceptFileOnDisk();
    if (document.record().isQuilloryDocument)
        document.setDefinitionWithTitle(document.record().definitionTitle);
    else
        document.syntaxColouring().loadDefinitions(path);
}

void take(ReadResult result, const QString& path, DocumentWindow& window)
{
    if (!result.answer || !result.text) {
        window.questions().tell(&window, tr("The template cannot be used."),
                                result.answer
                                    ? tr("“%1” is no text.").arg(QDir::toNativeSeparators(path))
                                    : result.message,
                                [] {});
        return;
    }
    DocumentWindow& shown = window.isUntouched() ? window : *window.controller().newDocument();
    fill(shown.document(), std::move(result), path);
    window.controller().raise(shown);
}

} // namespace

void newFromTemplate(const QString& path, DocumentWindow& window)
{
    window.controller().loader().load(
        path, &window, [path, guard = QPointer(&window)](std::optional<ReadResult> result) {
            if (result && guard)
                take(std::move(*result), path, *guard);
        });
}

void saveAsTemplate(DocumentWindow& window)
{
    const QString folder = folderOf(window);
    QDir().mkpath(folder);
    window.saving().saveCopy(folder);
}

void addTemplates(QMenu& menu, DocumentWindow& window)
{
    addFolder(menu, window, folderOf(window), 0);
    if (menu.isEmpty())
        menu.addAction(tr("There are no templates yet"))->setEnabled(false);
}

void fillTemplateMenu(QMenu& menu, DocumentWindow& window)
{
    addTemplates(menu, window);
    menu.addSeparator();
    QAction* save = menu.addAction(tr("&Save as Template…"));
    save->setEnabled(!window.document().isLoading() && !window.document().isUndecoded());
    QObject::connect(save, &QAction::triggered, &window, [&window] { saveAsTemplate(window); });
    QObject::connect(menu.addAction(tr("&Open Templates Folder")), &QAction::triggered, &window,
                     [&window] { openFolder(window); });
}

} // namespace quillory
