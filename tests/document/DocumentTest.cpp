#include "document/DocumentFixture.h"
#include "support/Folders.h"

#include "document/CharsetProbe.h"
#include "document/DocumentWindowHost.h"
#include "foundation/PropertyListReader.h"

#include <QSignalSpy>

namespace quillory {
namespace {

using DocumentTest = test::DocumentFixture;

TEST_F(DocumentTest, ANewOneStartsAsUnixUtf8AndAsksForItsSettings)
{
    const auto document = openNew();
    const DocumentRecord& record = document->record();
    EXPECT_EQ(record.encoding, StringEncoding::utf8);
    EXPECT_EQ(record.lbFormat, 1);
    EXPECT_EQ(record.plistKind, 0);
    EXPECT_TRUE(record.isTextDefinition);
    EXPECT_FALSE(record.colorNumbers);
    EXPECT_EQ(record.neewLineSymbolString, QStringLiteral("9166"));
    EXPECT_EQ(document->encodingsArrayController().selected()->number, StringEncoding::utf8);
    EXPECT_FALSE(document->isDocumentEdited());

    QSignalSpy sheet(document.get(), &Document::settingsSheetRequested);
    EXPECT_TRUE(sheet.wait(2000));
    defaults.setValue(keys::dontAsk, true);
    const auto quiet = openNew();
    const auto opened = open(write("file.txt", "text"));
    QSignalSpy none(quiet.get(), &Document::settingsSheetRequested);
    QSignalSpy neither(opened.get(), &Document::settingsSheetRequested);
    EXPECT_FALSE(none.wait(500));
    EXPECT_EQ(neither.count(), 0);
}

TEST_F(DocumentTest, TheOpenSequenceKeepsItsOrder)
{
    struct Host : DocumentWindowHost
    {
        QStringList calls;
        void wireCloudTable() override { calls << QStringLiteral("table"); }
        void centreWindow() override { calls << QStringLiteral("centre"); }
        void placeTitleBarButtons(const std::array<int, 4>& positions) override
        {
            calls << QStringLiteral("buttons %1 %2 %3 %4")
                         .arg(positions[0])
                         .arg(positions[1])
                         .arg(positions[2])
                         .arg(positions[3]);
        }
        void setThumbnailBackground(Colour) override { calls << QStringLiteral("thumbnails"); }
    } host;
    Document document(environment);
    document.windowControllerDidLoadNib(&host);
    EXPECT_EQ(host.calls,
              QStringList({QStringLiteral("table"), QStringLiteral("centre"),
                           QStringLiteral("buttons 21 48 71 97"), QStringLiteral("thumbnails")}));
    QSignalSpy settings(&document, &Document::textViewSettingsApplied);
    EXPECT_TRUE(settings.wait(1000)); // a moment after opening, and whenever the preferences change
    notifications.post(notifications::preferencesDidChange);
    EXPECT_EQ(settings.count(), 2);
}

TEST_F(DocumentTest, TheFirstStartFillsTheSupportFolderOnce)
{
    openNew();
    const QString list = folders.applicationSupport + QStringLiteral("/Encodings.plist");
    EXPECT_TRUE(QFile::exists(list));
    EXPECT_TRUE(QDir(folders.applicationSupport + QStringLiteral("/Definitions")).exists());
    EXPECT_TRUE(QDir(folders.applicationSupport + QStringLiteral("/Themes")).exists());
    QFile::remove(list);
    const auto second = openNew();
    EXPECT_FALSE(QFile::exists(list));
    EXPECT_TRUE(second->encodingsArrayController().entries().empty());
}

TEST_F(DocumentTest, ChangingLineBreaksIsOneNamedStep)
{
    const auto document = open(write("file.txt", "a\r\nb\rc\nd"));
    EXPECT_EQ(document->record().lbFormat, 3);
    const std::pair<int, const char*> formats[] = {
        {3, "a\r\nb\r\nc\r\nd"}, {2, "a\rb\rc\rd"}, {1, "a\nb\nc\nd"}, {0, "a\nb\nc\nd"}};
    for (const auto& [format, text] : formats) {
        QSignalSpy changed(&document->textView(), &QPTextView::textDidChange);
        document->textView().setSelectedRange({document->completeString().length(), 0});
        document->record().lbFormat = format;
        document->changeLBFormatAction(7); // the tag has no effect
        EXPECT_EQ(textOf(*document), text);
        EXPECT_EQ(changed.count(), 2); // the settings that are applied anew tell of one, too
        EXPECT_EQ(document->undoManager().undoActionName(), QStringLiteral("Changed Line Endings"));
        EXPECT_EQ(document->textView().selectedRange().location,
                  document->completeString().length());
        document->textView().undo();
        EXPECT_EQ(textOf(*document), "a\r\nb\rc\nd");
    }
}

TEST_F(DocumentTest, ChangingTheEncodingKeepsWhatFitsAndTheWholeTextOtherwise)
{
    auto document = open(write("file.txt", "gr\xC3\xBC\xC3\x9F \xE6\x97\xA5"));
    const auto choose = [&](StringEncoding encoding) {
        document->encodingsArrayController().selectNumber(encoding);
        document->changeEncodingAction();
    };
    choose(StringEncoding::utf16);
    EXPECT_EQ(document->record().encoding, StringEncoding::utf16);
    EXPECT_EQ(textOf(*document), "gr\xC3\xBC\xC3\x9F \xE6\x97\xA5");
    EXPECT_EQ(document->undoManager().undoActionName(), QStringLiteral("Changed Encoding"));
    EXPECT_TRUE(document->isDocumentEdited());
    SaveResult result;
    document->writeToURL(document->path(), document->type(), &result);
    EXPECT_EQ(test::readBytes(document->path()).first(4), QByteArray("\xFF\xFEg\0", 4));

    choose(StringEncoding::isoLatin1); // has no U+65E5
    EXPECT_EQ(textOf(*document), "gr\xC3\xBC\xC3\x9F \xE6\x97\xA5");
    const QByteArray before = test::readBytes(document->path());
    document->writeToURL(document->path(), document->type(), &result);
    EXPECT_EQ(result.problem, SaveProblem::Unencodable);
    EXPECT_EQ(result.offset, 5);
    EXPECT_TRUE(result.message.contains(QStringLiteral("U+65E5"))) << result.message.toStdString();
    EXPECT_EQ(test::readBytes(document->path()), before);
    EXPECT_TRUE(document->isDocumentEdited());
    EXPECT_EQ(recovery.records()->size(), 1); // the text is kept until it is saved or given up
    document.reset();
    EXPECT_EQ(recovery.records()->size(), 0);
}

TEST_F(DocumentTest, AnEncodingThatIsNotListedLeavesAnEmptyListAndIndexZero)
{
    const auto document = openNew();
    EncodingList& list = document->encodingsArrayController();
    ASSERT_GE(list.entries().size(), 40U);
    document->record().encoding = StringEncoding::none;
    document->selectEncoding();
    EXPECT_TRUE(list.arranged().empty());
    EXPECT_EQ(list.selectionIndex(), 0);
    document->record().encoding = StringEncoding::isoLatin1;
    document->selectEncoding();
    EXPECT_EQ(list.arranged().size(), list.entries().size());
    EXPECT_EQ(list.selected()->number, StringEncoding::isoLatin1);
}

TEST_F(DocumentTest, NativeArchivesKeepWhatTheyStore)
{
    const auto document = openNew();
    document->textView().insertText(QStringLiteral("eins\nzw\u00F6lf"));
    document->record().encoding = StringEncoding::isoLatin1;
    document->record().lbFormat = 3;
    document->record().definitionTitle = QStringLiteral("HTML");
    document->record().baseURL = QStringLiteral("http://localhost/");
    const QString path = file("note.quillory");
    ASSERT_TRUE(document->writeToURL(path, DocumentType::archive));

    const auto again = open(path);
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->record().isQuilloryDocument);
    EXPECT_EQ(textOf(*again), "eins\r\nzw\xC3\xB6lf");
    EXPECT_EQ(again->record().encoding, StringEncoding::isoLatin1);
    EXPECT_EQ(again->record().lbFormat, 3);
    EXPECT_EQ(again->record().definitionTitle, QStringLiteral("HTML"));
    EXPECT_EQ(again->record().baseURL, QStringLiteral("http://localhost/"));
    again->textView().setSelectedRange({0, 4});
    again->textView().insertText(QStringLiteral("\u65E5"));
    EXPECT_FALSE(again->writeToURL(path, DocumentType::archive)); // does not fit
    EXPECT_FALSE(open(write("broken.quillory", "bplist00 nonsense")));
}

TEST_F(DocumentTest, PropertyListsGoThroughTheirForms)
{
    // Text that decodes stays as it is.
    const QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">"
                           "<dict><key>b</key><integer>1</integer></dict></plist>\n";
    const auto kept = open(write("kept.plist", xml));
    EXPECT_TRUE(kept->record().isPlistFile);
    EXPECT_EQ(kept->record().plistKind, 0);
    EXPECT_TRUE(kept->writeToURL(kept->path(), kept->type()));
    EXPECT_EQ(test::readBytes(kept->path()), xml);

    // A binary one is edited, and saved, as XML.
    const QString binary = QStringLiteral(QUILLORY_SOURCE_DIR "/tests/document/data/binary.plist");
    const QString path = file("binary.plist");
    ASSERT_TRUE(QFile::copy(binary, path));
    const auto document = open(path);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->record().plistKind, 3);
    EXPECT_EQ(document->record().encoding, StringEncoding::utf8);
    ASSERT_TRUE(document->completeString().string().startsWith(QStringLiteral("<?xml")));
    SaveResult result;
    EXPECT_TRUE(document->writeToURL(path, document->type(), &result));
    EXPECT_TRUE(result.written);
    const QByteArray rendered = test::readBytes(path);
    EXPECT_EQ(rendered, document->completeString().string().toUtf8());

    // What does not parse any more is not written, and the place is told.
    document->textView().setSelectedRange({document->completeString().lineStart(LineIndex(3)), 0});
    document->textView().insertText(QStringLiteral("<broken>"));
    EXPECT_TRUE(document->writeToURL(path, document->type(), &result));
    EXPECT_EQ(result.problem, SaveProblem::UnparsablePropertyList);
    EXPECT_GE(result.line.value(), 3);
    EXPECT_EQ(test::readBytes(path), rendered);
    EXPECT_TRUE(document->isDocumentEdited());

    EXPECT_FALSE(open(write("broken.plist", QByteArray("bplist00\xFF\xFF\xFF", 11))));
    QDir().mkpath(file("folder.plist"));
    EXPECT_FALSE(open(file("folder.plist")));
}

TEST_F(DocumentTest, DeclaredCharsetsAreProbedAndTheGuessDropped)
{
    const auto document = openNew();
    EXPECT_EQ(document->guessEncodingFromData("<meta charset=\"windows-1252\">"),
              StringEncoding::utf8);
    const std::pair<QByteArray, StringEncoding> cases[] = {
        {"<meta charset=\"windows-1252\">", StringEncoding::windowsLatin1},
        {"x; charset=iso-8859-1 ", StringEncoding::isoLatin1},
        {"<?xml version=\"1.0\" encoding=\"shift_jis\"?>", StringEncoding(0x80000a01)},
        {"charset=", StringEncoding::none},
        {"encoding=", StringEncoding::none},
        {"\xEF\xBB\xBFtext", StringEncoding::utf8},
        {"\xFE\xFF\x01\x02", StringEncoding::utf16},
        {"\xFF\xFE", StringEncoding::none}, // too short to tell
    };
    for (const auto& [bytes, encoding] : cases)
        EXPECT_EQ(probedEncoding(bytes), encoding) << bytes.toStdString();
}

TEST_F(DocumentTest, AFileChangedByAnotherProgramIsNotWrittenOver)
{
    const QString path = write("file.txt", "old");
    const auto document = open(path);
    document->textView().insertText(QStringLiteral("mine "));
    write("file.txt", "theirs!");
    SaveResult result;
    document->writeToURL(path, document->type(), &result);
    EXPECT_EQ(result.problem, SaveProblem::ChangedByOther);
    EXPECT_EQ(test::readBytes(path), "theirs!");
    document->acceptFileOnDisk();
    document->writeToURL(path, document->type(), &result);
    EXPECT_TRUE(result.written);
    EXPECT_EQ(test::readBytes(path), "mine old");
}

TEST_F(DocumentTest, AMarkCanBeRemovedAndRevertBringsTheFileBack)
{
    const QString path = write("file.txt", "\xEF\xBB\xBFone");
    const auto document = open(path);
    EXPECT_TRUE(document->hasByteOrderMark());
    document->setHasByteOrderMark(false);
    EXPECT_TRUE(document->isDocumentEdited());
    document->writeToURL(path, document->type());
    EXPECT_EQ(test::readBytes(path), "one");
    document->textView().insertText(QStringLiteral("x"));
    EXPECT_TRUE(document->revert().answer);
    EXPECT_EQ(textOf(*document), "one");
    EXPECT_FALSE(document->isDocumentEdited());
    document->textView().undo(); // reverting can be undone
    EXPECT_EQ(textOf(*document), "xone");
}

TEST_F(DocumentTest, TypingDuringASaveStaysUnsaved)
{
    const QString path = write("file.txt", "one");
    const auto document = open(path);
    document->textView().insertText(QStringLiteral("a"));
    const SaveJob job = document->saveJob(path, document->type());
    document->textView().insertText(QStringLiteral("b"));
    document->finishSave(job, job.run(ops, recovery));
    EXPECT_EQ(test::readBytes(path), "aone");
    EXPECT_TRUE(document->isDocumentEdited());
}

} // namespace
} // namespace quillory
