#include "commands/ActionsMenu.h"
#include "commands/CommandPlaceholders.h"
#include "commands/CommandTrust.h"
#include "commands/ExternalPrograms.h"
#include "editing/QPTextView.h"
#include "support/Folders.h"
#include "syntax/PropertyListFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

namespace quillory {
namespace {

constexpr int patience = 120'000; // milliseconds

QString s(const char* text)
{
    return QString::fromUtf8(text);
}

const QString shipped = s(QUILLORY_SOURCE_DIR "/resources/Definitions");

std::vector<CommandItem> itemsOf(const PropertyListFile& file)
{
    std::vector<CommandItem> items;
    for (const ActionEntry& entry : actionEntries(file.dictionary[s("commandItems")])) {
        if (entry.representedObject)
            items.push_back(*entry.representedObject);
    }
    return items;
}

TEST(ShippedCommands, CanBeRun)
{
    int programs = 0;
    for (const PropertyListFile& file : propertyListsBelow(shipped)) {
        for (const CommandItem& item : itemsOf(file)) {
            const QString title =
                file.path.section(u'/', -1) + u": " + item.title.value_or(QString());
            const std::string name = title.toStdString();
            const QString body = item.string.value_or(QString());
            EXPECT_FALSE(body.isEmpty()) << name;
            switch (item.kind) {
            case CommandKind::Terminal:
            case CommandKind::LaTeX: {
                ++programs;
                EXPECT_TRUE(body.startsWith(u'/')) << name;
                EXPECT_TRUE(body.contains(placeholders::textAsFile)) << name;
                EXPECT_FALSE(hasPlaceholderAsProgram(body)) << name;
                const CommandLine line = commandLineWithFile(body, s("/a b/c"));
                EXPECT_FALSE(line.arguments.contains(QString())) << name;
                // It is an argument of its own, never a part of what a shell reads.
                EXPECT_TRUE(line.arguments.contains(s("/a b/c"))) << name;
                break;
            }
            case CommandKind::Url:
            case CommandKind::Help:
                EXPECT_FALSE(CommandTrust::needsTrust(item)) << name;
                EXPECT_TRUE(QUrl(body, QUrl::StrictMode).isValid()) << name;
                break;
            default:
                break;
            }
            if (item.kind == CommandKind::LaTeX) {
                EXPECT_TRUE(body.contains(s(" -no-shell-escape "))) << name;
                EXPECT_TRUE(body.contains(s(" -interaction=nonstopmode "))) << name;
            }
        }
    }
    EXPECT_GT(programs, 50);
}

/// Edited text is typeset under the document's name, with what lies beside it, wherever it is.
TEST(ShippedCommands, LaTeXMakesThePdfOfTheTextAsItIs)
{
    if (!QFileInfo::exists(s("/usr/bin/pdflatex")))
        GTEST_SKIP() << "pdflatex is not installed";
    const QTemporaryDir folder;
    const QString path = folder.filePath(s("my thesis/it’s v2.tex"));
    QDir().mkpath(QFileInfo(path).path());
    QFile part(QFileInfo(path).path() + s("/part.tex"));
    ASSERT_TRUE(part.open(QFile::WriteOnly) && part.write("\\message{the part}") > 0);
    part.close();

    TextStorage storage;
    UndoManager undo(storage);
    QPTextView editor(storage, undo);
    ExternalPrograms programs(editor, folder.filePath(s("caches and more")),
                              [&] { return ExternalPrograms::File{path}; });
    const QSignalSpy opened(&programs, &ExternalPrograms::openRequested);

    const std::vector<CommandItem> items = itemsOf(propertyListAt(shipped + s("/LaTeX.plist")));
    const auto item = std::find_if(items.begin(), items.end(), [](const CommandItem& candidate) {
        return candidate.shouldOpenPDFPreview && candidate.string->contains(s("pdflatex"));
    });
    ASSERT_NE(item, items.end());
    programs.writeTemporaryFile(
        TextSnapshot(
            s("\\documentclass{article}\\begin{document}\\input{part}Text\\end{document}")),
        s("tex"), [&](const Result<QString>& written) {
            ASSERT_TRUE(written);
            programs.performLaTeXCommand(commandLineWithFile(*item->string, *written),
                                         QFileInfo(path).path(), path.chopped(4));
        });
    ASSERT_TRUE(QTest::qWaitFor([&] { return opened.size() > 0; }, patience));
    const QString pdf = path.chopped(4) + s(".pdf");
    EXPECT_EQ(opened.value(0).value(0).toString(), pdf);
    QFile made(pdf);
    ASSERT_TRUE(made.open(QFile::ReadOnly));
    EXPECT_TRUE(made.read(5) == "%PDF-");
}

} // namespace
} // namespace quillory
