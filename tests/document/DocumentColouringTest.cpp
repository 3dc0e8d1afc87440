#include "document/DocumentFixture.h"

#include "document/DocumentWindowHost.h"

#include <QSignalSpy>
#include <QTest>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;

/// Shows all of a document's text.
struct Window : DocumentWindowHost
{
    Document* document = nullptr;
    TextRange visibleTextRange() override { return document->completeString().range(); }
};

struct DocumentColouringTest : test::DocumentFixture
{
    Window window;

    std::unique_ptr<Document> openShown(const QString& path)
    {
        auto document = std::make_unique<Document>(environment);
        window.document = document.get();
        EXPECT_TRUE(document->readFromURL(path, DocumentType::ofFile(path)));
        document->windowControllerDidLoadNib(&window);
        return document;
    }
    /// The coloured stretches of the text.
    static QStringList coloured(Document& document)
    {
        QCoreApplication::sendPostedEvents(); // once for what was typed at one go
        QStringList result;
        for (const OverlayRun& run : document.overlay().runs(document.completeString().range()))
            result.append(document.completeString().string(run.range));
        return result;
    }
    void writeDefinition(const QByteArray& name, const QByteArray& body) const
    {
        QDir().mkpath(folders.applicationSupport + u"/Definitions"_s);
        write("support/Definitions/" + name + ".plist",
              "{ title = \"" + name + "\"; " + body + " }");
    }
    QString write(const QByteArray& name, const QByteArray& bytes) const
    {
        return DocumentFixture::write(name.constData(), bytes);
    }
};

TEST_F(DocumentColouringTest, TheRecordFollowsTheDefinition)
{
    writeDefinition("Lab", "extensions = (lab); canCloseTags = YES; canUsePDFPreview = 1; "
                           "functionMenuTitle = Rule; mainExtension = lb; colorNumbers = true; "
                           "beginCommand = \"<\"; endCommand = \">\";");
    writeDefinition("Text", "canUsePreview = YES; mainExtension = txt;");
    const auto document = openShown(write("a.LAB", "<b> 1 x"));
    const DocumentRecord& record = document->record();
    EXPECT_EQ(record.definitionTitle, u"Lab"_s);
    EXPECT_EQ(record.functionTitle, u"Rule"_s);
    EXPECT_EQ(record.mainExtension, u"lb"_s);
    EXPECT_TRUE(record.canCloseTags && record.canUsePDFPreview && record.colorNumbers);
    EXPECT_FALSE(record.canUsePreview || record.isTextDefinition);
    EXPECT_EQ(coloured(*document), (QStringList{u"<b>"_s, u"1"_s}));

    QSignalSpy changed(document.get(), &Document::recordChanged);
    QSignalSpy closed(document.get(), &Document::settingsPopoverShouldClose);
    SyntaxColouring& colouring = document->syntaxColouring();
    colouring.selectDefinition(colouring.definitions().indexOfPlainText());
    document->applyDefinitionAction();
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(closed.count(), 1);
    EXPECT_TRUE(record.isTextDefinition && record.canUsePreview);
    EXPECT_FALSE(record.canCloseTags || record.canUsePDFPreview || record.colorNumbers);
    EXPECT_EQ(record.functionTitle, QString());
    EXPECT_EQ(coloured(*document), QStringList());
    EXPECT_FALSE(document->isDocumentEdited());
}

TEST_F(DocumentColouringTest, AnArchiveIsOpenedWithTheDefinitionStoredInIt)
{
    writeDefinition("Lab", "extensions = (lab);");
    const auto document = openShown(write("a.lab", "x"));
    const QString archive = file("a.quillory");
    ASSERT_TRUE(document->writeToURL(archive, QString(DocumentType::archive)));
    EXPECT_EQ(openShown(archive)->record().definitionTitle, u"Lab"_s);
    QFile::remove(folders.applicationSupport + u"/Definitions/Lab.plist"_s);
    EXPECT_EQ(openShown(archive)->record().definitionTitle, u"Text"_s);
}

TEST_F(DocumentColouringTest, SavingUnderAnotherExtensionChoosesItsDefinition)
{
    writeDefinition("A", "extensions = (one); keywords = (if);");
    writeDefinition("B", "extensions = (two); keywords = (else);");
    writeDefinition("C", "extensions = (two); keywords = (while);");
    const auto document = openShown(write("a.one", "if else while"));
    EXPECT_EQ(coloured(*document), QStringList{u"if"_s});
    struct Row
    {
        const char* name;
        QString title;
        QString word;
    };
    const Row rows[] = {
        {"a.TWO", u"C"_s, u"while"_s}, {"a.three", u"C"_s, u"while"_s}, {"a.one", u"A"_s, u"if"_s}};
    for (const Row& row : rows) {
        ASSERT_TRUE(document->writeToURL(file(row.name), QString(DocumentType::text)));
        EXPECT_EQ(document->record().definitionTitle, row.title);
        EXPECT_EQ(coloured(*document), QStringList{row.word});
    }
    // What the user chose stays while the name does.
    document->setDefinitionWithTitle(u"B"_s);
    ASSERT_TRUE(document->writeToURL(file("a.one"), QString(DocumentType::text)));
    EXPECT_EQ(document->record().definitionTitle, u"B"_s);
}

TEST_F(DocumentColouringTest, ColoursFollowTypingAndPreferences)
{
    writeDefinition("Lab", "extensions = (lab); keywords = (if); autocompleteWords = (done);"
                           "firstString = \"'\";");
    const auto document = openShown(write("a.lab", "x if done 'a\nb'"));
    EXPECT_EQ(coloured(*document), (QStringList{u"if"_s, u"done"_s}));
    document->textView().setSelectedRange({2, 0});
    document->textView().insertText(u"x"_s);
    EXPECT_EQ(coloured(*document), QStringList{u"done"_s});
    document->textView().undo();
    EXPECT_EQ(coloured(*document), (QStringList{u"if"_s, u"done"_s}));
    defaults.setValue(keys::colourMultiLineStrings, true);
    notifications.post(notifications::preferencesDidChange);
    EXPECT_EQ(coloured(*document), (QStringList{u"if"_s, u"done"_s, u"'a\nb'"_s}));
    document->record().lbFormat = 3;
    document->changeLBFormatAction(0);
    EXPECT_EQ(coloured(*document).last(), u"'a\r\nb'"_s);
}

TEST_F(DocumentColouringTest, ABeginningIsColouredWhileTheRestIsRead)
{
    writeDefinition("Lab", "extensions = (lab); keywords = (if);");
    const QString path = write("a.lab", "if\n");
    Document document(environment);
    window.document = &document;
    document.adoptBeginning(readDocument(path, DocumentType::ofFile(path)));
    document.windowControllerDidLoadNib(&window);
    EXPECT_EQ(coloured(document), QStringList{u"if"_s});
    document.takeMore(TextSnapshot(u"if if"_s));
    QTRY_COMPARE(coloured(document), QStringList({u"if"_s, u"if"_s, u"if"_s}));
}

TEST_F(DocumentColouringTest, WhatIsWrongKeepsNoDocumentFromOpening)
{
    QDir().mkpath(folders.applicationSupport + u"/Definitions"_s);
    write("support/Definitions/broken.plist", "\x00\x01");
    writeDefinition("Wrong",
                    "extensions = (wrong); keywords = 7; firstString = \"(\"; "
                    "functionDefinition = \"[\"; canCloseTags = (1); mainExtension = (x);");
    const auto document = openShown(write("a.wrong", "text ("));
    EXPECT_EQ(document->record().definitionTitle, u"Wrong"_s);
    EXPECT_EQ(textOf(*document), "text (");
    EXPECT_EQ(document->syntaxColouring().faults().size(), 6U);
}

TEST_F(DocumentColouringTest, TheFirstStartBringsWhatShips)
{
    const QString definitions = folders.applicationSupport + u"/Definitions"_s;
    writeDefinition("PHP", "extensions = (own);");
    openNew();
    const auto names = [](const QString& path) { return QDir(path).entryList(QDir::Files); };
    for (const QString& kind : {u"/Definitions"_s, u"/Themes"_s}) {
        EXPECT_EQ(names(folders.applicationSupport + kind), names(folders.resources + kind));
        EXPECT_GE(names(folders.applicationSupport + kind).size(), 5);
    }
    EXPECT_TRUE(test::readBytes(definitions + u"/PHP.plist"_s).contains("own"));
    EXPECT_TRUE(QFileInfo(definitions + u"/Text.plist"_s).isWritable());

    QFile::remove(definitions + u"/CSS.plist"_s);
    openNew();
    EXPECT_FALSE(QFile::exists(definitions + u"/CSS.plist"_s));
    QDir(definitions).removeRecursively(); // as an early version left it
    openNew();
    EXPECT_EQ(names(definitions), names(folders.resources + u"/Definitions"_s));
}

} // namespace
} // namespace quillory
