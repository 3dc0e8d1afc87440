#include "AppFixture.h"

#include "app/Recovery.h"
#include "app/SaveFlow.h"
#include "app/SessionEnd.h"
#include "app/Templates.h"
#include "document/Document.h"

#include <QDir>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <csignal>

namespace quillory {
namespace {

using Subject = MessageArea::Subject;
using test::AppFixture;

constexpr int patience = 20000; // milliseconds; only a failing test waits that long

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

class RecoveryTest : public AppFixture
{
protected:
    /// As after a crash: the window is gone, its journal is there. Answers the journal's id.
    static QString crash(DocumentWindow& window)
    {
        QString id = window.journal().id();
        window.journal().leave();
        window.document().undoManager().markClean();
        window.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return id;
    }

    void recoverAll()
    {
        bool done = false;
        Recovery flow(controller, environment);
        flow.recoverAll([&done] { done = true; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return done; }, patience));
    }

    /// The only window, brought back.
    DocumentWindow& broughtBack()
    {
        recoverAll();
        if (controller.windows().size() != 1)
            qFatal("%d windows", int(controller.windows().size()));
        DocumentWindow& window = *controller.windows().front();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        return window;
    }

    QStringList journals() { return JournalFile::idsIn(disk, recovery); }

    static bool says(DocumentWindow& window, const char* part)
    {
        return message(window, Subject::Recovery).contains(qs(part));
    }
};

TEST_F(RecoveryTest, NamedTextComesBackAndIsSaved)
{
    const QString file = write("a.html", "<p>one</p>\n");
    DocumentWindow& before = open(file);
    press(before, {qs("'größer '")});
    const QString id = crash(before);
    DocumentWindow& window = broughtBack();
    EXPECT_EQ(textOf(window), qs("größer <p>one</p>\n"));
    EXPECT_EQ(window.document().path(), file);
    EXPECT_EQ(window.document().record().definitionTitle, qs("HTML"));
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_TRUE(says(window, "a.html"));
    EXPECT_EQ(window.journal().id(), id) << "the same journal goes on";

    press(window, {qs("'x'")});
    const QString again = crash(window);
    EXPECT_EQ(again, id);
    DocumentWindow& twice = broughtBack();
    EXPECT_EQ(textOf(twice), qs("xgrößer <p>one</p>\n"));
    save(twice);
    EXPECT_EQ(bytesOf(file), "xgrößer <p>one</p>\n");
    EXPECT_FALSE(says(twice, "a.html"));
    EXPECT_TRUE(journals().isEmpty());
}

TEST_F(RecoveryTest, UntitledTextComesBackUntilItIsDiscarded)
{
    (void)openNew();
    DocumentWindow& before = openNew();
    press(before, {qs("'draft'")});
    controller.windows().front()->close();
    crash(before);
    QPointer<DocumentWindow> window = &broughtBack();
    EXPECT_EQ(textOf(*window), qs("draft"));
    EXPECT_EQ(window->document().displayName(), qs("Untitled 2"));
    ASSERT_TRUE(pressWayOut(*window, qs("Keep")));
    EXPECT_FALSE(says(*window, "Untitled"));
    crash(*window);
    window = &broughtBack();
    questions.agrees = true;
    ASSERT_TRUE(pressWayOut(*window, qs("Discard")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window; }, patience));
    EXPECT_TRUE(journals().isEmpty());
}

TEST_F(RecoveryTest, TextOnATemplateComesBack)
{
    DocumentWindow& before = openNew();
    newFromTemplate(write("letter.html", "<p>Dear</p>\r\n"), before);
    ASSERT_TRUE(QTest::qWaitFor([&] { return textOf(before) == qs("<p>Dear</p>\r\n"); }, patience));
    press(before, {qs("Ctrl+End"), qs("'you'")});
    crash(before);
    write("letter.html", "another");
    DocumentWindow& window = broughtBack();
    EXPECT_EQ(textOf(window), qs("<p>Dear</p>\r\nyou"));
    EXPECT_EQ(window.document().path(), QString());
    EXPECT_EQ(window.document().record().definitionTitle, qs("HTML"));
    EXPECT_EQ(window.document().record().lbFormat, 3);
    EXPECT_TRUE(window.document().isDocumentEdited());
}

TEST_F(RecoveryTest, FileThatChangedIsLeftAlone)
{
    const QString file = write("a.txt", "one\n");
    DocumentWindow& before = open(file);
    press(before, {qs("'mine '")});
    crash(before);
    write("a.txt", "theirs\n");
    DocumentWindow& window = broughtBack();
    EXPECT_EQ(textOf(window), qs("mine one\n"));
    EXPECT_TRUE(says(window, "changed since"));
    save(window);
    EXPECT_EQ(bytesOf(file), "theirs\n");
    EXPECT_FALSE(message(window, Subject::Saving).isEmpty());
    questions.agrees = true;
    ASSERT_TRUE(pressWayOut(window, qs("Discard")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == qs("theirs\n"); }, patience));
    EXPECT_TRUE(journals().isEmpty());
    press(window, {qs("Ctrl+Z")});
    EXPECT_EQ(textOf(window), qs("mine one\n"));
}

TEST_F(RecoveryTest, TextOfAFailedSaveComesBackOnce)
{
    const QString file = write("a.txt", "one\n");
    DocumentWindow& before = open(file);
    press(before, {qs("'漢'")});
    before.chooseEncoding(StringEncoding::ascii);
    save(before);
    ASSERT_EQ(recovery.records()->size(), 1);
    crash(before);
    ASSERT_EQ(recovery.records()->size(), 1);
    QPointer<DocumentWindow> window = &broughtBack();
    EXPECT_EQ(textOf(*window), qs("漢one\n"));
    // Without the journal, by the record.
    window->journal().discard();
    window->journal().leave();
    crash(*window);
    window = &broughtBack();
    EXPECT_EQ(textOf(*window), qs("漢one\n"));
    window->chooseEncoding(StringEncoding::utf8);
    window->document().acceptFileOnDisk();
    save(*window);
    EXPECT_EQ(bytesOf(file), "漢one\n");
    EXPECT_TRUE(recovery.records()->isEmpty());
}

TEST_F(RecoveryTest, FullDiskIsToldOnce)
{
    DocumentWindow& window = openNew();
    disk.full = true;
    press(window, {qs("'ab'")});
    EXPECT_TRUE(message(window, Subject::Journal).contains(qs("cannot keep your edits safe: ")));
    EXPECT_EQ(textOf(window), qs("ab"));
    disk.full = false;
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return message(window, Subject::Journal).isEmpty(); }, patience));
    crash(window);
    EXPECT_EQ(textOf(broughtBack()), qs("ab"));
}

TEST_F(RecoveryTest, SavingIsTheWayOutOfAFullDisk)
{
    for (const bool isQuiet : {true, false}) {
        SCOPED_TRACE(isQuiet);
        DocumentWindow& window = open(write("a.txt", "one\n"));
        for (int times = 0; times < 2; ++times) {
            disk.full = true;
            press(window, {qs("'x'")});
            EXPECT_FALSE(message(window, Subject::Journal).isEmpty()) << times;
            disk.full = false;
            if (isQuiet) {
                window.saving().saveQuietly(false, [](const SaveResult&) {});
                waitUntilIdle(window);
            } else {
                save(window);
            }
            EXPECT_EQ(message(window, Subject::Journal), QString()) << times;
        }
        window.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(RecoveryTest, DamagedJournalIsKeptAsideAndTold)
{
    struct Case
    {
        const char* name;
        qint64 damagedAt; ///< bytes from the beginning, or from the end
        const char* told;
    };
    for (const Case& c : {Case{"its beginning", 3, "Edits that were not saved"},
                          Case{"the only edit", -3, "The last edits of “a.txt”"}}) {
        SCOPED_TRACE(c.name);
        DocumentWindow& before = open(write("a.txt", "one\n"));
        press(before, {qs("'x'")});
        const QString id = crash(before);
        const QString journal = QFile::decodeName(JournalFile::pathOf(recovery, id));
        QByteArray bytes = bytesOf(journal);
        const qint64 at = c.damagedAt < 0 ? bytes.size() + c.damagedAt : c.damagedAt;
        bytes[at] = char(bytes[at] ^ 1);
        QFile file(journal);
        ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();

        Recovery flow(controller, environment);
        bool done = false;
        flow.recoverAll([&done] { done = true; });
        ASSERT_TRUE(QTest::qWaitFor([&] { return done; }, patience));
        EXPECT_TRUE(journals().isEmpty());
        EXPECT_EQ(bytesOf(journal + qs(".unreadable")), bytes);
        // In the first window that opens.
        DocumentWindow& window = openNew();
        const QString told = message(window, Subject::DamagedJournals);
        EXPECT_TRUE(told.startsWith(qs(c.told))) << qPrintable(told);
        EXPECT_TRUE(told.contains(journal));
        window.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(RecoveryTest, SaveThatIsUnderWayEndsBeforeTheProgram)
{
    const QString file = write("a.txt", "one\n");
    DocumentWindow& window = open(file);
    press(window, {qs("'mine '")});
    SessionEnd end(controller);
    disk.held = true;
    window.saving().save();
    ASSERT_EQ(std::raise(SIGTERM), 0);
    QTest::qWait(200);
    EXPECT_FALSE(window.journal().isLeft());
    EXPECT_EQ(journals().size(), 1) << "until it is saved";
    disk.held = false;
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.journal().isLeft(); }, patience));
    EXPECT_EQ(bytesOf(file), "mine one\n");
    EXPECT_TRUE(journals().isEmpty());
}

TEST_F(RecoveryTest, SignalEndsWithoutAQuestion)
{
    DocumentWindow& window = openNew();
    press(window, {qs("'draft'")});
    SessionEnd end(controller);
    const QSignalSpy wanted(&end, &SessionEnd::stateWanted);
    ASSERT_EQ(std::raise(SIGTERM), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return wanted.size() == 1; }, patience));
    EXPECT_TRUE(window.journal().isLeft());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(journals().size(), 1);
}

} // namespace
} // namespace quillory
