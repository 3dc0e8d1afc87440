#pragma once

#include "../editing/MarkedEditor.h"

#include "commands/ActionsMenu.h"
#include "commands/CommandExecution.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"
#include "foundation/XmlPropertyListWriter.h"
#include "syntax/SyntaxColouring.h"
#include "text/Overlay.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>

namespace quillory::test {

/// A text with a definition whose commands reach a world that only takes notes. Selections are
/// written «forward», ‹backward› and as a caret|.
struct CommandHarness
{
    explicit CommandHarness(const char* marked, PropertyList::Dictionary item = {})
        : editor(QString::fromUtf8(marked), nullptr, QStringLiteral("«»‹›|"))
    {
        folders.applicationSupport = folder.filePath(QStringLiteral("support"));
        folders.resources = folder.filePath(QStringLiteral("resources"));
        folders.state = folder.filePath(QStringLiteral("state"));
        if (item.isEmpty())
            item.insert(QStringLiteral("kind"), 9);
        const PropertyList definition = PropertyList::Dictionary{
            {QStringLiteral("title"), QStringLiteral("T")},
            {QStringLiteral("commandItems"), PropertyList::Array{PropertyList(item)}}};
        writeDefinition(folders.applicationSupport, definition);
        writeDefinition(folders.resources, definition);
        colouring.setDefinitionWithTitle(QStringLiteral("T"));
        QObject::connect(&execution, &CommandExecution::alertRequested, &editor.view,
                         [this](const QString& title, const QString& message) {
                             log += QStringLiteral("alert %1 %2").arg(title, message);
                         });
        QObject::connect(&execution, &CommandExecution::logRequested, &editor.view,
                         [this](const TextSnapshot& output) {
                             log += QStringLiteral("log ") + output.string();
                         });
        QObject::connect(&editor.view, &QPTextView::beep, &editor.view,
                         [this] { log += QStringLiteral("beep"); });
    }

    static void writeDefinition(const QString& root, const PropertyList& definition)
    {
        QDir().mkpath(root + QStringLiteral("/Definitions"));
        QFile file(root + QStringLiteral("/Definitions/T.plist"));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(*writeXmlPropertyList(definition));
    }

    /// Runs the definition's only command.
    void run() { execution.commandAction(menu.entries().at(1)); }

    std::string happened() const { return log.join(u'\n').toStdString(); }

    CommandSurroundings surroundings()
    {
        CommandSurroundings world;
        world.file = [this] { return CommandSurroundings::File{path, {}, encoding}; };
        world.clipboardText = [this](auto tell) { tell(clipboard); };
        world.openUrl = [this](const QUrl& url) {
            log += QStringLiteral("open ") + QString::fromUtf8(url.toEncoded());
        };
        world.isSandboxed = [this] { return isSandboxed; };
        world.askForTrust = [this](const TrustQuestion& question, auto answer) {
            log += QStringLiteral("ask ") + question.command;
            answer(agrees);
        };
        world.writeTemporaryFile = [this](const TextSnapshot& text, auto done) {
            log += QStringLiteral("write ") + text.string();
            if (diskIsFull)
                done(Failure{QStringLiteral("No space left")});
            else
                done(QStringLiteral("/tmp dir/1.txt"));
        };
        world.performTerminalCommand = [this](const CommandLine& line, bool replaces,
                                              const CommandSurroundings::Output& done) {
            note(replaces ? "replace" : "capture", line);
            pending = done;
        };
        world.performRunCommand = [this](const CommandLine& line, const QString& where) {
            note("run", line, where);
        };
        world.performLaTeXCommand = [this](const CommandLine& line, const QString& where,
                                           const QString& title) {
            note("latex", line, where + u' ' + title);
        };
        world.urlRequestWithURL = [this](const QString& url, const TextSnapshot& text,
                                         bool asData) {
            log += QStringLiteral("send %1 %2 %3").arg(url, text.string()).arg(asData);
        };
        return world;
    }

    void note(const char* what, const CommandLine& line, const QString& more = {})
    {
        log += (QStringList{QString::fromUtf8(what), line.program} + line.arguments).join(u'|');
        if (!more.isEmpty())
            log.back() += QStringLiteral(" in ") + more;
    }

    QTemporaryDir folder;
    ApplicationFolders folders;
    UserDefaults defaults{folder.filePath(QStringLiteral("Q.conf"))};
    MarkedEditor editor;
    Overlay overlay;
    SyntaxColouring colouring{editor.storage, overlay, folders, defaults};
    ActionsMenu menu{colouring};

    QString path = QStringLiteral("/docs/my thesis.v2.tex");
    StringEncoding encoding = StringEncoding::utf8;
    std::optional<QString> clipboard;
    bool isSandboxed = false;
    bool agrees = false;
    bool diskIsFull = false;
    QStringList log;
    CommandSurroundings::Output pending; ///< what the program that was run last tells its output

    CommandTrust trust{folder.filePath(QStringLiteral("resources/Definitions")),
                       folder.filePath(QStringLiteral("state"))};
    CommandExecution execution{editor.view, colouring, trust, surroundings()};
};

} // namespace quillory::test
