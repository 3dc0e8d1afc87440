#include "AppFixture.h"

#include "document/Document.h"

#include <QMenu>
#include <QMenuBar>
#include <QTest>

namespace quillory {
namespace {

using test::AppFixture;

class CloudMoveTest : public AppFixture
{
protected:
    CloudMoveTest() { qputenv("QUILLORY_CLOUD_CONTAINER", QFile::encodeName(path("container"))); }
    ~CloudMoveTest() override { qunsetenv("QUILLORY_CLOUD_CONTAINER"); }

    static QString nameOf(const QAction& action) { return action.text().remove(u'&'); }

    /// As it is while the menu is open; null where it does not show.
    static QAction* moveCommand(DocumentWindow& window)
    {
        QMenu* menu = window.menuBar()->actions().front()->menu();
        Q_EMIT menu->aboutToShow();
        QAction* found = nullptr;
        for (QAction* action : menu->actions()) {
            if (action->isVisible() && nameOf(*action).endsWith(QStringLiteral("iCloud")))
                found = action;
        }
        return found;
    }

    /// The window of a file that stands in the container after this.
    DocumentWindow& openMoved(bool ofAnotherDevice)
    {
        disk.isSplit = ofAnotherDevice;
        QDir().mkpath(path("container"));
        QFile::remove(moved);
        DocumentWindow& window = open(write("a.txt", "a"));
        moveCommand(window)->trigger();
        waitUntilIdle(window);
        EXPECT_EQ(window.document().path(), moved);
        return window;
    }

    QString moved = path("container/Documents/a.txt");
};

TEST_F(CloudMoveTest, IsOfferedWhereThereIsAContainer)
{
    DocumentWindow& window = open(write("a.txt", "a"));
    EXPECT_EQ(moveCommand(window), nullptr);
    EXPECT_TRUE(defaults.isWritten(keys::isIcloudAvailable));
    EXPECT_FALSE(defaults.value(keys::isIcloudAvailable));

    ASSERT_TRUE(QDir().mkpath(path("container")));
    QAction* move = moveCommand(window);
    ASSERT_TRUE(move);
    EXPECT_TRUE(defaults.value(keys::isIcloudAvailable));
    EXPECT_TRUE(move->isEnabled());
    EXPECT_EQ(nameOf(*move), u"Move To iCloud");
    QAction* ofUntitled = moveCommand(*controller.newDocument());
    ASSERT_TRUE(ofUntitled);
    EXPECT_FALSE(ofUntitled->isEnabled()) << "there is no file";

    move->trigger();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.document().path() == moved; }));
    EXPECT_TRUE(QFile::exists(moved));
    EXPECT_FALSE(QFile::exists(path("a.txt")));
    EXPECT_EQ(nameOf(*moveCommand(window)), u"Remove From iCloud");
}

TEST_F(CloudMoveTest, FileThatCannotBeMovedStays)
{
    const QString file = write("a.txt", "a");
    ASSERT_TRUE(QDir().mkpath(path("container")));
    write("container/Documents", "no folder");
    DocumentWindow& window = open(file);
    moveCommand(window)->trigger();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !questions.told.isEmpty(); }));
    EXPECT_EQ(window.document().path(), file);
    EXPECT_TRUE(QFile::exists(file));
}

TEST_F(CloudMoveTest, SaveMeanwhileFollowsTheFile)
{
    ASSERT_TRUE(QDir().mkpath(path("container")));
    DocumentWindow& window = open(write("a.txt", "a"));
    QAction* command = moveCommand(window);
    disk.isSplit = true;
    disk.held = true;
    command->trigger();
    EXPECT_TRUE(window.isBusy());
    press(window, {QStringLiteral("'x'"), QStringLiteral("Ctrl+S")});
    QTest::qWait(50);
    disk.held = false;
    waitUntilIdle(window);
    EXPECT_EQ(window.document().path(), moved);
    EXPECT_EQ(bytesOf(moved), "xa");
    EXPECT_FALSE(window.document().isDocumentEdited());
    EXPECT_FALSE(QFile::exists(path("a.txt")));
    EXPECT_TRUE(questions.told.isEmpty());
}

TEST_F(CloudMoveTest, MovedFileIsWatchedAndSavedAsBefore)
{
    defaults.setValue(keys::autosaveInPlace, true);
    for (const bool ofAnotherDevice : {false, true}) {
        DocumentWindow& window = openMoved(ofAnotherDevice);
        press(window, {QStringLiteral("'x'")});
        QEvent leave(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(&window, &leave);
        waitUntilIdle(window);
        EXPECT_EQ(bytesOf(moved), "xa") << ofAnotherDevice;

        write("container/Documents/a.txt", "by another program");
        EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"by another program"; }))
            << ofAnotherDevice;
        window.close();
    }
}

TEST_F(CloudMoveTest, ChangeBeforeTheMoveIsNotTakenForKnown)
{
    ASSERT_TRUE(QDir().mkpath(path("container")));
    DocumentWindow& window = open(write("a.txt", "a"));
    QAction* command = moveCommand(window);
    press(window, {QStringLiteral("'x'")});
    write("a.txt", "by another program");
    disk.isSplit = true;
    command->trigger();
    save(window);
    EXPECT_EQ(bytesOf(moved), "by another program");
    EXPECT_TRUE(window.document().isDocumentEdited());
}

TEST_F(CloudMoveTest, LinkStaysAndWhatItLeadsToIsMoved)
{
    const QString file = write("real.txt", "a");
    ASSERT_TRUE(QDir().mkpath(path("container")));
    ASSERT_TRUE(QFile::link(file, path("link.txt")));
    DocumentWindow& window = open(path("link.txt"));
    moveCommand(window)->trigger();
    waitUntilIdle(window);
    EXPECT_EQ(window.document().path(), path("container/Documents/real.txt"));
    EXPECT_TRUE(QFileInfo(path("container/Documents/real.txt")).isFile());
    EXPECT_FALSE(QFileInfo(path("container/Documents/real.txt")).isSymLink());
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(QFileInfo(path("link.txt")).isSymLink());
}

} // namespace
} // namespace quillory
