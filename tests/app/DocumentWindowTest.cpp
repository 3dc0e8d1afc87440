#include "AppFixture.h"

#include "app/MessageBar.h"
#include "app/RereadFlow.h"
#include "app/SaveFlow.h"
#include "app/StatusLine.h"
#include "document/Document.h"
#include "text/TextEncoder.h"
#include "view/TextViewWidget.h"

#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTest>

namespace quillory::test {
namespace {

using Subject = MessageArea::Subject;

class DocumentWindowTest : public AppFixture
{};

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

TEST_F(DocumentWindowTest, editsAndSavesInTheEncodingOfTheFile)
{
    struct
    {
        const char* name;
        QByteArray bytes;
        QByteArray saved; ///< after "Z" was typed at the start
        const char* encoding;
        const char* lineBreaks;
    } const cases[]{
        {"utf8.txt", "gr\xc3\xbc\xc3\x9f\n", "Zgr\xc3\xbc\xc3\x9f\n", "Unicode (UTF-8)",
         "Unix (LF)"},
        {"mark.txt", "\xef\xbb\xbfone\r\ntwo\r\n", "\xef\xbb\xbfZone\r\ntwo\r\n",
         "Unicode (UTF-8) with BOM", "Windows (CRLF)"},
        {"utf16.txt",
         QByteArray("\xff\xfe"
                    "a\0\r\0b\0\r\0",
                    10),
         QByteArray("\xff\xfe"
                    "Z\0a\0\r\0b\0\r\0",
                    12),
         "Unicode (UTF-16)", "Mac (CR)"},
        {"bigend.txt",
         QByteArray("\xfe\xff"
                    "\0a\0\n",
                    6),
         QByteArray("\xfe\xff"
                    "\0Z\0a\0\n",
                    8),
         "Unicode (UTF-16)", "Unix (LF)"},
    };
    for (const auto& c : cases) {
        const QString file = write(c.name, c.bytes);
        DocumentWindow& window = open(file);
        EXPECT_EQ(window.statusLine().encodingText(), qs(c.encoding)) << c.name;
        EXPECT_EQ(window.statusLine().lineBreaksText(), qs(c.lineBreaks)) << c.name;
        const QString text = textOf(window);
        press(window, {qs("'Z'")});
        EXPECT_EQ(textOf(window), u'Z' + text) << c.name;
        EXPECT_TRUE(window.isWindowModified()) << c.name;
        save(window);
        EXPECT_EQ(bytesOf(file).toHex(' '), c.saved.toHex(' ')) << c.name;
        EXPECT_FALSE(window.isWindowModified()) << c.name;
        press(window, {qs("Ctrl+Z")});
        EXPECT_TRUE(window.isWindowModified()) << c.name;
        save(window);
        EXPECT_EQ(bytesOf(file).toHex(' '), c.bytes.toHex(' ')) << c.name;
    }
}

TEST_F(DocumentWindowTest, showsWhereTheCaretIs)
{
    DocumentWindow& window = open(write("a.txt", "one\ntwo 😀 three\n"));
    const StatusLine& status = window.statusLine();
    EXPECT_EQ(status.positionText(), qs("Line 1, Column 1"));
    press(window, {qs("Down"), qs("End")});
    EXPECT_EQ(status.positionText(), qs("Line 2, Column 12"));
    EXPECT_EQ(status.selectionText(), QString());
    press(window, {qs("Shift+Left")});
    EXPECT_EQ(status.selectionText(), qs("1 character selected"));
    press(window, {qs("Ctrl+A")});
    EXPECT_EQ(status.selectionText(), qs("16 characters selected"));
    EXPECT_EQ(window.windowTitle(), qs("a.txt[*] — Quillory"));
}

TEST_F(DocumentWindowTest, tellsOfMixedLineBreaksUntilTheFirstSave)
{
    const QString file = write("mixed.txt", "a\r\nb\nc\rd\r\n");
    DocumentWindow& window = open(file);
    EXPECT_TRUE(message(window, Subject::LineBreaks)
                    .contains(qs("1 × Unix (LF), 1 × Mac (CR), "
                                 "2 × Windows (CRLF)")));
    EXPECT_EQ(window.statusLine().lineBreaksText(), qs("Mixed: 1 LF, 1 CR, 2 CRLF"));
    choose(window, qs("Format/Line Breaks/Unix (LF)"));
    EXPECT_TRUE(message(window, Subject::LineBreaks).endsWith(qs("all of them Unix (LF).")));
    EXPECT_TRUE(window.isWindowModified());
    save(window);
    EXPECT_EQ(bytesOf(file), "a\nb\nc\nd\n");
    EXPECT_EQ(message(window, Subject::LineBreaks), QString());
    EXPECT_EQ(window.statusLine().lineBreaksText(), qs("Unix (LF)"));
}

TEST_F(DocumentWindowTest, removesTheByteOrderMark)
{
    const QString file = write("mark.txt", "\xef\xbb\xbfone\n");
    DocumentWindow& window = open(file);
    choose(window, qs("Format/Byte-Order Mark"));
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(window.statusLine().encodingText(), qs("Unicode (UTF-8)"));
    save(window);
    EXPECT_EQ(bytesOf(file), "one\n");
}

TEST_F(DocumentWindowTest, saysWhichCharacterDoesNotFit)
{
    const QString file = write("euro.txt", "ok\nfive €\n");
    DocumentWindow& window = open(file);
    choose(window, qs("Format/Encoding/Western/Western (ISO Latin 1)"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !message(window, Subject::Encoding).isEmpty(); }));
    EXPECT_TRUE(
        message(window, Subject::Encoding).contains(qs("“€” (U+20AC) in line 2, column 6")));

    save(window);
    EXPECT_TRUE(message(window, Subject::Saving).contains(qs("“€” (U+20AC)")));
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(bytesOf(file), "ok\nfive €\n");

    ASSERT_TRUE(pressWayOut(window, qs("Show Character")));
    EXPECT_EQ(window.document().textView().selectedRange(), (TextRange{8, 0}));
    ASSERT_TRUE(pressWayOut(window, qs("Save as UTF-8")));
    waitUntilIdle(window);
    EXPECT_EQ(message(window, Subject::Saving), QString());
    EXPECT_FALSE(window.isWindowModified());
}

TEST_F(DocumentWindowTest, keepsTheTextWhenTheDiskIsFull)
{
    const QString file = write("a.txt", "old\n");
    DocumentWindow& window = open(file);
    press(window, {qs("'new '")});
    disk.full = true;
    save(window);
    EXPECT_TRUE(message(window, Subject::Saving).contains(qs("a.txt")));
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(bytesOf(file), "old\n");

    disk.full = false;
    ASSERT_TRUE(pressWayOut(window, qs("Try Again")));
    waitUntilIdle(window);
    EXPECT_EQ(message(window, Subject::Saving), QString());
    EXPECT_EQ(bytesOf(file), "new old\n");
    EXPECT_FALSE(window.isWindowModified());
}

TEST_F(DocumentWindowTest, asksBeforeItReplacesWhatAnotherProgramWrote)
{
    const QString file = write("a.txt", "old\n");
    DocumentWindow& window = open(file);
    press(window, {qs("'mine '")});
    write("a.txt", "theirs, and longer\n");
    save(window);
    EXPECT_NE(message(window, Subject::Saving), QString());
    EXPECT_EQ(bytesOf(file), "theirs, and longer\n");
    ASSERT_TRUE(pressWayOut(window, qs("Overwrite")));
    waitUntilIdle(window);
    EXPECT_EQ(bytesOf(file), "mine old\n");

    write("a.txt", "theirs again\n");
    press(window, {qs("'x'")});
    save(window);
    ASSERT_TRUE(pressWayOut(window, qs("Reload")));
    waitUntilIdle(window);
    EXPECT_EQ(textOf(window), qs("theirs again\n"));
    EXPECT_FALSE(window.isWindowModified());
}

TEST_F(DocumentWindowTest, savesElsewhere)
{
    DocumentWindow& window = openNew();
    press(window, {qs("'text'")});
    save(window);
    EXPECT_EQ(questions.asked, QStringList{qs("Save As")});
    EXPECT_TRUE(window.isWindowModified()) << "the dialog was cancelled";

    questions.savePath = path("named.txt");
    save(window);
    EXPECT_EQ(bytesOf(path("named.txt")), "text");
    EXPECT_EQ(window.windowTitle(), qs("named.txt[*] — Quillory"));

    questions.savePath = path("copy.txt");
    press(window, {qs("'!'")});
    choose(window, qs("File/Save a Copy…"));
    waitUntilIdle(window);
    EXPECT_EQ(bytesOf(path("copy.txt")), "text!");
    EXPECT_EQ(window.document().path(), path("named.txt"));
    EXPECT_TRUE(window.isWindowModified());

    const QStringList expected{path("named.txt")};
    EXPECT_EQ(controller.recentDocuments(), expected);
}

TEST_F(DocumentWindowTest, staysUsableWhileItSaves)
{
    const QString file = write("a.txt", "");
    DocumentWindow& window = open(file);
    press(window, {qs("'a'")});
    disk.held = true;
    press(window, {qs("Ctrl+S"), qs("'b'")});
    EXPECT_EQ(window.statusLine().activityText(), qs("Saving…"));
    disk.held = false;
    waitUntilIdle(window);
    EXPECT_EQ(window.statusLine().activityText(), QString());
    EXPECT_EQ(bytesOf(file), "a");
    EXPECT_TRUE(window.isWindowModified()) << "b came after the save";

    disk.held = true;
    press(window, {qs("Ctrl+S"), qs("'c'"), qs("Ctrl+S"), qs("'d'")});
    disk.held = false;
    waitUntilIdle(window);
    EXPECT_EQ(bytesOf(file), "abcd") << "the second save takes the text as it begins";
    EXPECT_FALSE(window.isWindowModified());
}

TEST_F(DocumentWindowTest, closesOnceTheSaveIsOver)
{
    const QString file = write("a.txt", "");
    const QPointer<DocumentWindow> window = &open(file);
    press(*window, {qs("'a'")});
    disk.held = true;
    press(*window, {qs("Ctrl+S"), qs("Ctrl+W")});
    ASSERT_TRUE(window) << "the file is still being written";
    disk.held = false;
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.isNull(); }, 20'000));
    EXPECT_EQ(bytesOf(file), "a");
    EXPECT_EQ(questions.asked, QStringList());
}

TEST_F(DocumentWindowTest, asksBeforeItReplacesAProtectedFile)
{
    const QString file = write("a.txt", "old");
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup));
    DocumentWindow& window = open(file);
    press(window, {qs("'x'")});
    save(window);
    EXPECT_EQ(questions.asked, QStringList{qs("Replace")});
    EXPECT_EQ(bytesOf(file), "old");
    questions.agrees = true;
    save(window);
    EXPECT_EQ(bytesOf(file), "xold");
    press(window, {qs("'y'")});
    save(window);
    EXPECT_EQ(questions.asked.size(), 2) << "it was agreed to once";
}

TEST_F(DocumentWindowTest, revertsAndReopensInAnotherEncoding)
{
    const QString file = write("latin.txt", "caf\xe9 \xfc"
                                            "ber\n");
    DocumentWindow& window = open(file);
    choose(window, qs("File/Reopen with Encoding/Cyrillic/Cyrillic (Windows)"));
    waitUntilIdle(window);
    EXPECT_EQ(textOf(window), qs("cafй ьber\n"));
    press(window, {qs("'x'")});
    choose(window, qs("File/Revert to Saved"));
    EXPECT_EQ(textOf(window), qs("xcafй ьber\n")) << "not without a yes";
    questions.agrees = true;
    choose(window, qs("File/Reopen with Encoding/Western/Western (ISO Latin 1)"));
    waitUntilIdle(window);
    EXPECT_EQ(textOf(window), qs("café über\n"));
    EXPECT_FALSE(window.isWindowModified());

    choose(window, qs("File/Reopen with Encoding/Unicode/Unicode (UTF-8)"));
    waitUntilIdle(window);
    EXPECT_EQ(textOf(window), qs("café über\n")) << "these bytes are not UTF-8";
    EXPECT_TRUE(message(window, Subject::Encoding).contains(qs("Unicode (UTF-8)")));
}

TEST_F(DocumentWindowTest, doesNotWriteOverBytesThatItDidNotUnderstand)
{
    QByteArray bytes("\x00\x01\xfe\x81\x00\x9d\xff\x8d", 8);
    bytes = bytes.repeated(40);
    const QString file = write("binary", bytes);
    DocumentWindow& window = open(file);
    ASSERT_TRUE(window.document().isUndecoded());
    EXPECT_NE(message(window, Subject::Encoding), QString());
    press(window, {qs("'x'")});
    EXPECT_EQ(textOf(window), QString());
    save(window);
    EXPECT_EQ(bytesOf(file), bytes);
    EXPECT_NE(message(window, Subject::Saving), QString());

    choose(window, qs("Format/Encoding/Western/Western (ISO Latin 1)"));
    waitUntilIdle(window);
    EXPECT_EQ(message(window, Subject::Encoding), QString());
    press(window, {qs("'x'")});
    save(window);
    EXPECT_EQ(bytesOf(file), "x" + bytes);
}

TEST_F(DocumentWindowTest, namesAndEnablesCommandsByTheDocument)
{
    DocumentWindow& window = open(write("a.txt", "one\n"));
    struct
    {
        const char* command;
        bool atFirst;
        bool afterTypingAndSelecting;
    } const cases[]{
        {"Edit/Redo", false, false},          {"Edit/Cut", false, true},
        {"Edit/Copy", false, true},           {"Edit/Delete", false, true},
        {"Edit/Paste", true, true},           {"View/Actual Size", false, false},
        {"File/Revert to Saved", true, true},
    };
    EXPECT_FALSE(command(window, qs("Edit/Undo"))->isEnabled());
    for (const auto& c : cases)
        EXPECT_EQ(command(window, qs(c.command))->isEnabled(), c.atFirst) << c.command;
    press(window, {qs("'x'"), qs("Ctrl+A")});
    QAction* undo = command(window, qs("Edit/Undo Typing"));
    ASSERT_TRUE(undo);
    EXPECT_TRUE(undo->isEnabled());
    for (const auto& c : cases)
        EXPECT_EQ(command(window, qs(c.command))->isEnabled(), c.afterTypingAndSelecting)
            << c.command;
}

TEST_F(DocumentWindowTest, followsALightOrDarkDesktop)
{
    const QPalette before = QApplication::palette();
    DocumentWindow& window = open(write("mixed.txt", "a\r\nb\n"));
    const QWidget* bar = window.messages().findChild<MessageBar*>();
    const auto contrast = [](const QWidget& widget) {
        return widget.palette().color(QPalette::WindowText).lightness() -
               widget.palette().color(QPalette::Window).lightness();
    };
    EXPECT_LT(contrast(*bar), -100) << "dark on light";
    QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(45, 45, 48)));
    QCoreApplication::processEvents();
    EXPECT_GT(contrast(*bar), 100) << "light on dark";
    QApplication::setPalette(before);
}

TEST_F(DocumentWindowTest, givesEachMenuItsOwnMnemonicsAndKeys)
{
    DocumentWindow& window = openNew();
    QStringList keys;
    QStringList titles;
    const auto mnemonic = [](const QAction* action) {
        const QString text = action->text();
        return text.mid(text.indexOf(u'&') + 1, 1).toLower();
    };
    for (QAction* menu : window.menuBar()->actions()) {
        titles += mnemonic(menu);
        QStringList mnemonics;
        for (const QAction* action : menu->menu()->actions()) {
            if (action->isSeparator())
                continue;
            ASSERT_TRUE(action->text().contains(u'&')) << qPrintable(action->text());
            mnemonics += mnemonic(action);
            for (const QKeySequence& key : action->shortcuts())
                keys += key.toString();
        }
        EXPECT_EQ(mnemonics.removeDuplicates(), 0) << qPrintable(menu->text());
    }
    EXPECT_EQ(titles.removeDuplicates(), 0);
    EXPECT_EQ(keys.removeDuplicates(), 0);
}

} // namespace
} // namespace quillory::test
