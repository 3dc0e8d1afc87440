#include "support/Folders.h"

#include "document/ScreenPlacement.h"
#include "document/SessionFile.h"
#include "foundation/BinaryPropertyListWriter.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using Dictionary = PropertyList::Dictionary;
using Array = PropertyList::Array;

SavedWindow fullWindow()
{
    SavedWindow window;
    // A file's name may hold what XML cannot.
    window.path = QStringLiteral("/a/\u0001") + QChar(0xd800);
    window.journal = QStringLiteral("j1");
    window.fileModified = 1'700'000'000'123'456'789;
    window.frame = {-20, 30, 640, 480};
    window.screen = QStringLiteral("DP-1");
    window.wasLeft = window.isMaximised = window.isFullScreen = window.isMinimised =
        window.isFloating = true;
    window.hidesLineNumbers = window.hidesStatusLine = true;
    window.zoom = -2;
    window.selections = {{3, 1}, {7, 9}};
    window.primary = 1;
    window.firstLine = 12;
    window.firstColumn = 3;
    window.firstRowY = -9;
    window.scrolledX = -4.5;
    window.state = {{QStringLiteral("lbFormat"), 3}};
    window.definitionTitle = QStringLiteral("HTML");
    window.encoding = 4;
    return window;
}

SavedWindow plainWindow()
{
    SavedWindow window;
    window.path = QStringLiteral("/b");
    return window;
}

TEST(SavedSessionTest, ReadsBackAsItWas)
{
    const std::vector<SavedWindow> windows{fullWindow(), plainWindow()};
    const auto bytes = writeBinaryPropertyList(encodeSession(windows));
    ASSERT_TRUE(bytes);
    const auto read = decodeSession(encodeSession(windows));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, windows);

    SavedWindow many = plainWindow();
    for (TextOffset i = 0; i <= TextOffset(maximumSelections); ++i)
        many.selections.push_back(Selection::caret(i));
    many.primary = 5;
    const auto one = decodeSession(encodeSession({many}));
    ASSERT_TRUE(one);
    EXPECT_EQ((*one)[0].selections, std::vector{Selection::caret(5)});
    EXPECT_EQ((*one)[0].primary, 0U);
}

TEST(SavedSessionTest, DamagedWindowsAreMadeTheBestOf)
{
    const auto decoded = [](const Dictionary& window) {
        return decodeSession(
            Dictionary{{QStringLiteral("version"), 1},
                       {QStringLiteral("windows"), PropertyList(Array{PropertyList(window)})}});
    };
    const QString path = QStringLiteral("path");
    struct Case
    {
        const char* key;
        PropertyList value;
    };
    const Case cases[]{
        {"selections", PropertyList(Array{1})},
        {"selections", Array{QStringLiteral("x"), -5}},
        {"selections", 7},
        {"primarySelection", 99},
        {"frame", Array{1, 2, 3}},
        {"frame", Array{std::numeric_limits<qint64>::max(), 0, 1, 1}},
        {"firstLine", -3},
        {"scrolledX", std::numeric_limits<double>::infinity()},
        {"zoom", std::numeric_limits<qint64>::max()},
        {"state", QStringLiteral("none")},
        {"screen", Array{}},
    };
    for (const Case& each : cases) {
        const auto windows =
            decoded({{path, QStringLiteral("/b")}, {QString::fromLatin1(each.key), each.value}});
        ASSERT_TRUE(windows) << each.key;
        ASSERT_EQ(windows->size(), 1U) << each.key;
        const SavedWindow& window = windows->front();
        EXPECT_EQ(window.path, u"/b");
        EXPECT_TRUE(window.primary == 0 || window.primary < window.selections.size());
        EXPECT_GE(window.firstLine, 0);
        EXPECT_TRUE(std::isfinite(window.scrolledX));
        EXPECT_LT(std::abs(window.zoom), 10'000'000);
        for (const Selection& selection : window.selections)
            EXPECT_TRUE(selection.anchor >= 0 && selection.head >= 0) << each.key;
    }
    // Nothing to bring back.
    EXPECT_TRUE(decoded({{QStringLiteral("zoom"), 1}})->empty());
    for (const PropertyList& wrong :
         {PropertyList(), PropertyList(Array{}), PropertyList(Dictionary{}),
          PropertyList(Dictionary{{QStringLiteral("version"), 2},
                                  {QStringLiteral("windows"), PropertyList(Array{})}}),
          PropertyList(Dictionary{{QStringLiteral("version"), 1}, {QStringLiteral("windows"), 3}})})
        EXPECT_FALSE(decodeSession(wrong));
}

TEST(ScreenPlacementTest, NoWindowStaysOutside)
{
    const QString left = QStringLiteral("left");
    const QString right = QStringLiteral("right");
    const std::vector<ScreenArea> both{{left, {0, 30, 1000, 670}}, {right, {1000, 0, 2000, 1200}}};
    const std::vector<ScreenArea> one{both[0]};
    struct Case
    {
        const char* what;
        QRect frame;
        QString screen;
        const std::vector<ScreenArea>& screens;
        QRect placed;
    };
    const Case cases[]{
        {"where it was", {100, 100, 400, 300}, left, both, {100, 100, 400, 300}},
        {"partly outside by will", {-200, 100, 400, 300}, left, both, {-200, 100, 400, 300}},
        {"on two screens", {900, 100, 400, 300}, left, both, {900, 100, 400, 300}},
        {"its screen is gone", {1500, 100, 400, 300}, right, one, {600, 100, 400, 300}},
        {"and it is too large", {1500, 100, 1600, 1100}, right, one, {0, 30, 1000, 670}},
        {"its bar is above", {100, -50, 400, 300}, left, both, {100, 30, 400, 300}},
        {"only a strip is in sight", {-390, 100, 400, 300}, left, both, {0, 100, 400, 300}},
        {"far away, of a known screen", {9000, 9000, 400, 300}, right, both, {2600, 900, 400, 300}},
        {"far away, of none", {9000, 9000, 400, 300}, {}, both, {600, 400, 400, 300}},
        {"a new panel", {100, 10, 400, 300}, left, one, {100, 30, 400, 300}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(placedOnScreens(each.frame, each.screen, each.screens), each.placed) << each.what;
}

class SessionFileTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("state/Session.plist"));
};

TEST_F(SessionFileTest, NewestIsKept)
{
    SessionFile file(path);
    EXPECT_TRUE(file.read().empty());
    QSignalSpy written(&file, &SessionFile::written);
    for (int i = 0; i < 5; ++i)
        file.write(std::vector<SavedWindow>(size_t(i), plainWindow()));
    ASSERT_TRUE(written.wait());
    EXPECT_EQ(file.read().size(), 4U);
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), 0);

    // Whichever thread comes first.
    file.write(std::vector<SavedWindow>(1, plainWindow()));
    file.writeAtOnce(std::vector<SavedWindow>(7, plainWindow()));
    EXPECT_EQ(file.read().size(), 7U);
    ASSERT_TRUE(written.wait());
    EXPECT_EQ(file.read().size(), 7U);
    file.remove();
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(SessionFileTest, OneProgramHasIt)
{
    auto first = std::make_unique<SessionFile>(path);
    SessionFile second(path);
    EXPECT_FALSE(first->isClaimed());
    EXPECT_TRUE(first->claim());
    EXPECT_TRUE(first->claim());
    EXPECT_FALSE(second.claim());
    first.reset();
    EXPECT_TRUE(second.claim());
}

TEST_F(SessionFileTest, DamagedOneIsPutAside)
{
    SessionFile file(path);
    ASSERT_TRUE(file.claim());
    file.writeAtOnce({fullWindow(), plainWindow()});
    QFile stored(path);
    ASSERT_TRUE(stored.open(QFile::ReadOnly));
    const QByteArray whole = stored.readAll();
    stored.close();
    for (const QByteArray& damaged :
         {QByteArray(), QByteArray("\0\0\0\0", 4), whole.left(whole.size() / 2),
          whole.left(whole.size() - 1), QByteArray("(1, 2)"), QByteArray("bplist00")}) {
        QFile target(path);
        ASSERT_TRUE(target.open(QFile::WriteOnly | QFile::Truncate));
        target.write(damaged);
        target.close();
        EXPECT_TRUE(file.read().empty()) << damaged.toHex().constData();
        EXPECT_FALSE(QFile::exists(path));
        QFile aside(path + QStringLiteral(".damaged"));
        ASSERT_TRUE(aside.open(QFile::ReadOnly));
        EXPECT_EQ(aside.readAll(), damaged);
    }
}

} // namespace
} // namespace quillory
