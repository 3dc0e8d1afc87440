#include "app/Autosave.h"

#include "AppFixture.h"

#include "app/ComparisonSide.h"
#include "app/ComparisonWindow.h"
#include "app/SaveFlow.h"
#include "app/VersionsFlow.h"
#include "app/VersionsWindow.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QInputMethodEvent>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <sys/stat.h>

namespace quillory {
namespace {

using Subject = MessageArea::Subject;
using test::AppFixture;

constexpr int patience = 20000; // milliseconds

class AutosaveTest : public AppFixture
{
protected:
    AutosaveTest() { defaults.setValue(keys::autosaveInPlace, true); }

    DocumentWindow& openText(const QByteArray& bytes = "one\n", const char* name = "a.txt")
    {
        DocumentWindow& window = open(write(name, bytes));
        (void)QTest::qWaitForWindowExposed(&window);
        QTest::qWait(50);
        return window;
    }
    /// As when another window gets the keyboard; waits for what comes of it.
    static void leave(DocumentWindow& window)
    {
        QEvent event(QEvent::WindowDeactivate);
        QApplication::sendEvent(&window, &event);
        waitUntilIdle(window);
    }
    static void type(DocumentWindow& window, const char* text)
    {
        press(window, {QStringLiteral("'%1'").arg(QString::fromUtf8(text))});
    }
    QByteArrayList kept(const char* name = "a.txt")
    {
        QByteArrayList list;
        const auto found = versions.versions(path(name));
        for (const FileVersion& version : *found) {
            list.append(QByteArray());
            EXPECT_TRUE(versions.bytes(version)([&](QByteArrayView piece) {
                list.last().append(piece);
                return true;
            }));
        }
        return list;
    }
};

TEST_F(AutosaveTest, SavesWhenTypingPauses)
{
    DocumentWindow& window = openText();
    QSignalSpy titles(&window, &QWidget::windowTitleChanged);
    QSignalSpy activity(&window.saving(), &SaveFlow::savingChanged);
    type(window, "x");
    EXPECT_TRUE(window.isWindowModified());
    QTest::qWait(Autosave::pause / 2);
    type(window, "y");
    QTest::qWait(Autosave::pause * 3 / 4);
    EXPECT_EQ(bytesOf(path("a.txt")), "one\n") << "typing has not paused";
    ASSERT_TRUE(QTest::qWaitFor([&] { return bytesOf(path("a.txt")) == "xyone\n"; }, patience));
    waitUntilIdle(window);
    EXPECT_FALSE(window.document().isDocumentEdited());
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(kept(), QByteArrayList{"one\n"});
    EXPECT_EQ(titles.count(), 0);
    for (const auto& arguments : activity)
        EXPECT_FALSE(arguments.first().toBool()) << "the status line says so";
    // Its own save is no other program's, and undo goes on.
    QTest::qWait(500);
    EXPECT_TRUE(message(window, Subject::FileOnDisk).isEmpty());
    press(window, {QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(textOf(window), u"one\n");
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "one\n");
}

TEST_F(AutosaveTest, SavesWhenLeftAndClosed)
{
    DocumentWindow& window = openText();
    type(window, "x");
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "xone\n");
    type(window, "y");
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "xyone\n");
    EXPECT_EQ(kept(), QByteArrayList{"one\n"}) << "what this wrote is no version at each save";

    // By command is a milestone.
    type(window, "z");
    save(window);
    type(window, "!");
    leave(window);
    EXPECT_EQ(kept(), (QByteArrayList{"xyzone\n", "xyone\n", "one\n"}));

    type(window, "?");
    QSignalSpy closed(&window, &DocumentWindow::closed);
    window.close();
    ASSERT_TRUE(QTest::qWaitFor([&] { return closed.count() > 0; }, patience));
    EXPECT_EQ(bytesOf(path("a.txt")), "xyz!?one\n") << "all of it when the window is gone";
}

TEST_F(AutosaveTest, LeavesAloneWhatIsNotSafeToSave)
{
    struct Case
    {
        const char* what;
        QByteArray bytes;
        std::function<void(DocumentWindow&)> make;
    };
    const QString file = path("a.txt");
    const Case cases[]{
        {"mixed line breaks", "one\r\ntwo\n", [](DocumentWindow& w) { type(w, "x"); }},
        {"a character that the encoding lacks", "gr\xfc\xdf\n",
         [](DocumentWindow& w) { w.document().textView().insertText(QStringLiteral("日")); }},
        {"another encoding", "one\n",
         [](DocumentWindow& w) {
             w.chooseEncoding(StringEncoding::utf16);
             type(w, "x");
         }},
        {"other line breaks", "one\n",
         [](DocumentWindow& w) {
             w.chooseLineBreaks(3);
             type(w, "x");
         }},
        {"a write-protected file", "one\n",
         [&](DocumentWindow& w) {
             ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), 0444), 0);
             type(w, "x");
         }},
        {"it is turned off", "one\n",
         [&](DocumentWindow& w) {
             type(w, "x");
             defaults.setValue(keys::autosaveInPlace, false);
         }},
    };
    for (const Case& sample : cases) {
        defaults.setValue(keys::autosaveInPlace, true);
        QFile::remove(file);
        DocumentWindow& window = openText(sample.bytes);
        sample.make(window);
        leave(window);
        EXPECT_EQ(bytesOf(file), sample.bytes) << sample.what;
        EXPECT_TRUE(window.document().isDocumentEdited()) << sample.what;
        EXPECT_TRUE(message(window, Subject::Autosaving).isEmpty()) << sample.what;
        EXPECT_TRUE(recovery.records()->isEmpty()) << sample.what;
        // Closing asks as ever.
        const auto asked = questions.asked.size();
        questions.beforeClosing = UserQuestions::BeforeClosing::Discard;
        QSignalSpy closed(&window, &DocumentWindow::closed);
        window.close();
        ASSERT_TRUE(QTest::qWaitFor([&] { return closed.count() > 0; }, patience)) << sample.what;
        EXPECT_EQ(questions.asked.size(), asked + 1) << sample.what;
        EXPECT_EQ(bytesOf(file), sample.bytes) << sample.what;
    }
}

TEST_F(AutosaveTest, ComposedTextIsWaitedFor)
{
    DocumentWindow& window = openText();
    type(window, "x");
    QInputMethodEvent composing(QStringLiteral("に"), {});
    QApplication::sendEvent(&window.view(), &composing);
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "one\n");
    QInputMethodEvent done;
    done.setCommitString(QStringLiteral("日"));
    QApplication::sendEvent(&window.view(), &done);
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "x日one\n");
}

TEST_F(AutosaveTest, AnotherProgramsFileIsNotOverwritten)
{
    DocumentWindow& window = openText();
    QTest::qWait(300);
    type(window, "mine ");
    write("a.txt", "theirs\n");
    leave(window); // before the watch can have told
    EXPECT_EQ(bytesOf(path("a.txt")), "theirs\n");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return !message(window, Subject::FileOnDisk).isEmpty(); }, patience));
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "theirs\n");
    ASSERT_TRUE(pressWayOut(window, QStringLiteral("Keep Mine")));
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "theirs\n") << "that is for the user to do";
    save(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "mine one\n");
    EXPECT_EQ(kept(), QByteArrayList{"theirs\n"});
    type(window, "again ");
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "mine again one\n");

    // One that is gone is not made again.
    type(window, "!");
    QFile::remove(path("a.txt"));
    leave(window);
    EXPECT_FALSE(QFile::exists(path("a.txt")));
}

TEST_F(AutosaveTest, WithoutAVersionThereIsNoSave)
{
    DocumentWindow& window = openText();
    disk.full = true;
    type(window, "x");
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "one\n");
    EXPECT_TRUE(window.document().isDocumentEdited());
    EXPECT_TRUE(message(window, Subject::Autosaving).contains(u"a.txt"));
    // What else is told of versions does not hide it.
    window.versions().read({path("a.txt"), {}, {}, 1, {}, {}}, [](const ReadResult*) {});
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return !message(window, Subject::Versions).isEmpty(); }, patience));
    EXPECT_TRUE(message(window, Subject::Autosaving).contains(u"a.txt"));
    // Told once.
    window.messages().clear(Subject::Autosaving);
    type(window, "y");
    leave(window);
    EXPECT_TRUE(message(window, Subject::Autosaving).isEmpty());
    EXPECT_EQ(bytesOf(path("a.txt")), "one\n");
    disk.full = false;
    type(window, "z");
    leave(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "xyzone\n");
    EXPECT_EQ(kept(), QByteArrayList{"one\n"});
}

TEST_F(AutosaveTest, RevertToBringsBackWhatWas)
{
    DocumentWindow& window = openText();
    type(window, "1");
    leave(window);
    type(window, "2");
    save(window);
    type(window, "3");
    leave(window);
    type(window, "4");
    ASSERT_EQ(textOf(window), u"1234one\n");
    window.versions().revertToLastSaved();
    ASSERT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"12one\n"; }, patience));
    EXPECT_TRUE(window.document().isDocumentEdited());
    window.versions().revertToLastOpened();
    ASSERT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"one\n"; }, patience));
    press(window, {QStringLiteral("Ctrl+Z"), QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(textOf(window), u"1234one\n") << "each a step of undo";

    QMenu menu;
    window.versions().fillMenu(menu);
    const auto entries = [&] {
        QList<QAction*> actions = menu.actions();
        erase_if(actions, [](const QAction* action) { return action->isSeparator(); });
        return actions;
    };
    EXPECT_EQ(entries()[0]->text().remove(u'&'), u"Last Saved");
    EXPECT_EQ(entries()[1]->text().remove(u'&'), u"Last Opened");
    EXPECT_TRUE(QTest::qWaitFor([&] { return entries().size() == 6; }, patience))
        << "three versions and the window of all";
    entries()[4]->trigger(); // the oldest
    ASSERT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"one\n"; }, patience));
}

TEST_F(AutosaveTest, WhatIsNotKeptIsNotOffered)
{
    const auto isOffered = [](DocumentWindow& window, int entry) {
        QMenu menu;
        window.versions().fillMenu(menu);
        return menu.actions()[entry]->isEnabled();
    };
    defaults.setValue(keys::autosaveInPlace, false);
    ASSERT_FALSE(write("versions", "in the way").isEmpty());
    DocumentWindow& window = openText();
    save(window);
    EXPECT_TRUE(isOffered(window, 1)) << "the same was written";
    type(window, "x");
    save(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "xone\n");
    EXPECT_TRUE(isOffered(window, 0));
    EXPECT_FALSE(isOffered(window, 1));

    // What another file held was never opened.
    ASSERT_TRUE(QFile::remove(path("versions")));
    questions.savePath = write("b.txt", "another\n");
    choose(window, QStringLiteral("File/Save As…"));
    waitUntilIdle(window);
    ASSERT_EQ(bytesOf(path("b.txt")), "xone\n");
    type(window, "y");
    window.versions().revertToLastOpened();
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) != u"xyone\n"; }, patience));
    EXPECT_EQ(textOf(window), u"xone\n");
}

TEST_F(AutosaveTest, VersionsAreBrowsed)
{
    DocumentWindow& window = openText();
    type(window, "1");
    leave(window);
    type(window, "2");
    save(window);
    type(window, "3");
    leave(window);
    window.versions().browse();
    const auto shows = [&](const char16_t* text) {
        const VersionsWindow* browser = window.versions().browser();
        return browser && browser->comparison() &&
               browser->comparison()->left().text().string() == QString::fromUtf16(text);
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return shows(u"12one\n"); }, patience));
    VersionsWindow& browser = *window.versions().browser();
    ASSERT_EQ(browser.list().count(), 3);
    browser.list().setCurrentRow(2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shows(u"one\n"); }, patience));
    EXPECT_EQ(browser.comparison()->right().text().string(), u"123one\n");
    browser.comparison()->findChild<QPushButton*>()->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"one\n"; }, patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window.versions().browser(); }, patience));
}

TEST_F(AutosaveTest, VersionsFollowTheFilesName)
{
    DocumentWindow& window = openText();
    QTest::qWait(300);
    type(window, "1");
    leave(window);
    ASSERT_TRUE(QFile::rename(path("a.txt"), path("b.txt")));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return window.document().path() == path("b.txt"); }, patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return kept("b.txt").size() == 1; }, patience));
    EXPECT_TRUE(kept("a.txt").isEmpty());
}

} // namespace
} // namespace quillory
