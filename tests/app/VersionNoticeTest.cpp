#include "app/VersionNotice.h"

#include "AppFixture.h"
#include "support/RecordingServer.h"

#include "app/MessageBar.h"
#include "app/StatusLine.h"

#include <QTest>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

class VersionNoticeTest : public AppFixture
{
protected:
    VersionNoticeTest()
    {
        defaults.setValue(keys::dontAsk, true);
        defaults.setValue(keys::versionListAddress, server.url(u"list"_s));
        offer("99.0");
    }

    void offer(const QByteArray& version)
    {
        server.answers[u"/list"_s] =
            RecordingServer::page("<plist version=\"1.0\"><array><dict><key>version</key><string>" +
                                  version + "</string></dict></array></plist>");
    }

    static QString told(const DocumentWindow& window)
    {
        return message(window, MessageArea::Subject::Version);
    }
    static QString activity(const DocumentWindow& window)
    {
        return window.statusLine().activityText();
    }
    static bool isTold(const DocumentWindow& window)
    {
        return QTest::qWaitFor([&] { return !told(window).isEmpty(); }, 10'000);
    }

    RecordingServer server;
    VersionNotice notice{controller, environment};
};

TEST_F(VersionNoticeTest, TellsOfANewerVersionUntilItIsSkipped)
{
    DocumentWindow& window = open(write("a.txt", "a"));
    notice.checkNow(window);
    EXPECT_FALSE(activity(window).isEmpty());
    ASSERT_TRUE(isTold(window));
    EXPECT_TRUE(told(window).contains(u"99.0"));
    EXPECT_TRUE(window.messages().findChild<MessageBar*>()->isVisible());
    EXPECT_EQ(activity(window), QString());
    press(window, {u"'x'"_s});
    save(window);
    EXPECT_FALSE(told(window).isEmpty()) << "saving changes nothing of it";

    ASSERT_TRUE(pressWayOut(window, u"Skip"_s));
    EXPECT_EQ(told(window), QString());
    defaults.setValue(keys::checksForVersions, true);
    notice.checkIfDue();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.paths.size() == 2; }, 10'000));
    QTest::qWait(100);
    EXPECT_EQ(told(window), QString());
    notice.checkNow(window);
    EXPECT_TRUE(isTold(window)) << "who asks is told";

    offer("0.0.1");
    notice.checkNow(window);
    EXPECT_TRUE(QTest::qWaitFor([&] { return questions.told.size() == 1; }, 10'000));
    EXPECT_TRUE(questions.told.value(0).startsWith(u"No New Version"_s));
}

TEST_F(VersionNoticeTest, AsksNobodyButWhereItIsWantedAndDue)
{
    const DocumentWindow& window = openNew();
    notice.checkIfDue();
    defaults.setValue(keys::checksForVersions, true);
    defaults.setValue(keys::versionListAddress, u" "_s);
    notice.checkIfDue();
    QTest::qWait(100);
    EXPECT_EQ(server.connections, 0);
    EXPECT_FALSE(defaults.isWritten(keys::lastVersionCheck));

    defaults.setValue(keys::versionListAddress, server.url(u"list"_s));
    notice.checkIfDue();
    EXPECT_TRUE(isTold(window));
    EXPECT_EQ(server.connections, 1);
    notice.checkIfDue();
    QTest::qWait(100);
    EXPECT_EQ(server.connections, 1) << "once a day";
}

TEST_F(VersionNoticeTest, ActivityOfOthersIsLeftAlone)
{
    DocumentWindow& first = openNew();
    DocumentWindow& second = openNew();
    notice.checkNow(first);
    notice.checkNow(second);
    EXPECT_EQ(activity(first), QString());
    EXPECT_FALSE(activity(second).isEmpty());
    second.statusLine().setActivity(u"Saving"_s);
    ASSERT_TRUE(isTold(second));
    EXPECT_EQ(activity(second), u"Saving");
    EXPECT_EQ(told(first), QString());
}

} // namespace
} // namespace quillory::test
