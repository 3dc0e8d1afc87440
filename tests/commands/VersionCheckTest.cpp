#include "commands/VersionCheck.h"
#include "commands/Version.h"
#include "support/Folders.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

TEST(Version, IsOrderedByItsNumbersAndItsPreRelease)
{
    // Each before the next; those in one row are the same.
    const QList<QStringList> ascending{
        {u"0.9"_s},
        {u"1.0.0-alpha"_s, u"v1-alpha"_s},
        {u"1.0.0-alpha.1"_s},
        {u"1.0.0-alpha.beta"_s},
        {u"1.0.0-beta"_s},
        {u"1.0.0-beta.2"_s},
        {u"1.0.0-beta.11"_s},
        {u"1.0.0-rc.1"_s},
        {u"1.0.0"_s, u"1"_s, u"V1.0"_s, u"1.0.0+build.5"_s, u" 1.0 "_s},
        {u"1.0.1"_s},
        {u"1.9"_s},
        {u"1.10"_s},
        {u"2.0-beta"_s},
        {u"2.0"_s},
        {u"10"_s},
    };
    for (int i = 0; i < ascending.size(); ++i) {
        for (int j = 0; j < ascending.size(); ++j) {
            for (const QString& a : ascending[i]) {
                for (const QString& b : ascending[j])
                    EXPECT_EQ(*Version::from(a) <=> *Version::from(b), i <=> j)
                        << qPrintable(a) << " and " << qPrintable(b);
            }
        }
    }
    for (const char* text : {"", "one", "1.", ".1", "1..2", "1.0-", "1.2 beta", "9999999999"})
        EXPECT_FALSE(Version::from(QString::fromUtf8(text))) << text;
}

QByteArray listOf(const QByteArray& entries)
{
    return "<?xml version=\"1.0\"?><plist version=\"1.0\"><array>" + entries + "</array></plist>";
}

QByteArray entryOf(const QByteArray& version, const QByteArray& more = {})
{
    return "<dict><key>version</key><string>" + version + "</string>" + more + "</dict>";
}

TEST(VersionList, TellsTheNewestThatCounts)
{
    const struct
    {
        const char* current;
        QByteArray entries;
        const char* newest; ///< empty for none
    } cases[]{
        {"1.9", entryOf("1.10") + entryOf("1.9.5"), "1.10"},
        {"1.9", entryOf("1.8") + entryOf("1.9"), ""},
        {"1.9", entryOf("2.0-beta"), ""},
        {"2.0-alpha", entryOf("2.0-beta") + entryOf("1.9"), "2.0-beta"},
        {"1.9", entryOf("latest") + "<string>3.0</string><dict/>" + entryOf("2"), "2"},
        {"1.9", "", ""},
    };
    for (const auto& c : cases) {
        const auto list = readVersionList(listOf(c.entries));
        ASSERT_TRUE(list);
        const auto newest = newestAbove(QString::fromUtf8(c.current), *list);
        EXPECT_EQ(newest ? newest->version.toStdString() : "", c.newest) << c.entries.data();
    }
    const auto list = readVersionList(
        listOf(entryOf("2", "<key>date</key><date>2026-11-22T10:00:00Z</date>"
                            "<key>notes</key><string>Much</string>"
                            "<key>url</key><string>https://example.org/2</string>") +
               entryOf("3", "<key>date</key><string>2026-12-01</string>"
                            "<key>url</key><string>file:///etc/passwd</string>")));
    ASSERT_TRUE(list);
    EXPECT_EQ((*list)[0].date, QDate(2026, 11, 22));
    EXPECT_EQ((*list)[0].notes, u"Much");
    EXPECT_EQ((*list)[0].url, QUrl(u"https://example.org/2"_s));
    EXPECT_EQ((*list)[1].date, QDate(2026, 12, 1));
    EXPECT_EQ((*list)[1].url, QUrl());
    EXPECT_FALSE(readVersionList("<html><p>Not found"));
    EXPECT_FALSE(readVersionList("<plist><dict/></plist>"));
}

/// A web server on this machine that gives the same answer to all.
class ListServer : public QTcpServer
{
public:
    explicit ListServer(QByteArray answer) : m_answer(std::move(answer))
    {
        EXPECT_TRUE(listen(QHostAddress::LocalHost));
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                if (!socket->readAll().endsWith("\r\n\r\n") || m_answer.isEmpty())
                    return;
                socket->write(m_answer);
                socket->disconnectFromHost();
            });
        });
    }

    QString url() const { return u"http://127.0.0.1:%1/"_s.arg(serverPort()); }

private:
    QByteArray m_answer;
};

QByteArray answerOf(const QByteArray& body, const QByteArray& head = "200 OK")
{
    return "HTTP/1.1 " + head +
           "\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\n\r\n" + body;
}

class VersionCheckTest : public ::testing::Test
{
protected:
    VersionCheckTest()
    {
        QObject::connect(&check, &VersionCheck::answered, &check,
                         [this](const std::optional<PublishedVersion>& newer) {
                             outcome = newer ? u"newer "_s + newer->version : u"nothing newer"_s;
                         });
        QObject::connect(&check, &VersionCheck::failed, &check,
                         [this](const QString& description) { outcome = description; });
    }

    QString ask(const QString& address)
    {
        outcome.clear();
        check.check(address);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !outcome.isEmpty(); }, 10'000));
        return outcome;
    }

    VersionCheck check{QStringLiteral(QUILLORY_BINARY_DIR "/src/app"),
                       u"1.9"_s,
                       {.time = 1s, .answer = 2000, .redirects = 2}};
    QString outcome;
};

TEST_F(VersionCheckTest, asksAServer)
{
    const ListServer newer(answerOf(listOf(entryOf("1.10"))));
    EXPECT_EQ(ask(newer.url()), u"newer 1.10"_s);
    EXPECT_EQ(ask(u"  "_s + newer.url() + u'\n'), u"newer 1.10"_s);
    const ListServer same(answerOf(listOf(entryOf("1.9"))));
    EXPECT_EQ(ask(same.url()), u"nothing newer"_s);
    const ListServer moved("HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: " +
                           newer.url().toUtf8() + "\r\n\r\n");
    EXPECT_EQ(ask(moved.url()), u"newer 1.10"_s);
}

TEST_F(VersionCheckTest, tellsWhatIsWrong)
{
    const ListServer page(answerOf("<html><p>Not found", "404 Not Found"));
    EXPECT_TRUE(
        ask(page.url()).startsWith(u"What is at “"_s + page.url() + u"” is no version list."_s));
    const ListServer large(answerOf(QByteArray(3000, ' ')));
    EXPECT_TRUE(ask(large.url()).contains(u"too long for a version list"_s));
    const ListServer silent{QByteArray()};
    EXPECT_EQ(ask(silent.url()), u"127.0.0.1 did not answer within 1 seconds."_s);
    EXPECT_TRUE(ask({}).startsWith(u"There is no address of a version list."_s));
    for (const char* address : {"example.org", "file:///etc/passwd", "https://", "http:// x"})
        EXPECT_TRUE(ask(QString::fromUtf8(address)).contains(u"no address of a web server"_s))
            << address;
    const ListServer elsewhere("HTTP/1.1 302 Found\r\nContent-Length: 0\r\n"
                               "Location: file:///etc/passwd\r\n\r\n");
    EXPECT_FALSE(ask(elsewhere.url()).startsWith(u"n"_s));
    EXPECT_FALSE(check.isRunning());
}

} // namespace
} // namespace quillory
