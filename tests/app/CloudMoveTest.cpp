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
    const QString moved = path("container/Documents/a.txt");
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

} // namespace
} // namespace quillory
