#include "commands/ServerRequests.h"
#include "support/Folders.h"

#include <QLocale>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace std::chrono_literals;

QByteArray answerOf(const QByteArray& body, const QByteArray& status = "200 OK",
                    const QByteArray& headers = {})
{
    return "HTTP/1.1 " + status +
           "\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
           headers + "\r\n" + body;
}

QByteArray redirectTo(const QByteArray& location)
{
    return answerOf("", "302 Found", "Location: " + location + "\r\n");
}

/// A web server on this machine that says what it is told to, by the path that it is asked for.
class WebServer : public QTcpServer
{
public:
    using Serve = std::function<void(QTcpSocket&, const QByteArray& path)>;

    explicit WebServer(Serve serve = {}) : m_serve(std::move(serve))
    {
        EXPECT_TRUE(listen(QHostAddress::LocalHost));
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
        });
    }

    QString url(const QString& path) const
    {
        return QStringLiteral("http://127.0.0.1:%1/%2").arg(serverPort()).arg(path);
    }

    QList<QByteArray> requests; ///< with their headers

private:
    void read(QTcpSocket& socket)
    {
        const QByteArray sofar = socket.property("request").toByteArray() + socket.readAll();
        socket.setProperty("request", sofar);
        if (!sofar.endsWith("\r\n\r\n"))
            return;
        requests += sofar;
        if (m_serve)
            m_serve(socket, sofar.split(' ').value(1));
    }

    Serve m_serve;
};

class ServerRequestsTest : public ::testing::Test
{
protected:
    struct Alert
    {
        QString title;
        QString message;
    };

    /// The next alert that is not known yet.
    Alert nextAlert(ServerRequests& requests)
    {
        QObject context;
        std::optional<Alert> alert;
        QObject::connect(&requests, &ServerRequests::alertRequested, &context,
                         [&](const QString& title, const QString& message) {
                             if (!alert)
                                 alert = {title, message};
                         });
        EXPECT_TRUE(QTest::qWaitFor([&] { return alert.has_value(); }, 10'000));
        return alert.value_or(Alert());
    }

    /// What becomes of a request that \a server answers with \a answer.
    Alert ask(const QByteArray& answer)
    {
        WebServer server([&](QTcpSocket& socket, const QByteArray&) {
            socket.write(answer);
            socket.disconnectFromHost();
        });
        ServerRequests requests(
            plugins, [this] { return form; }, limits);
        requests.urlRequestWithURL(server.url({}), {}, false);
        return nextAlert(requests);
    }

    const QString plugins = QStringLiteral(QUILLORY_BINARY_DIR "/src/app");
    ServerRequests::TextForm form;
    ServerRequests::Limits limits{.time = 5s, .answer = 1000, .text = 100, .redirects = 3};
};

TEST_F(ServerRequestsTest, ValuesAreEscaped)
{
    const std::pair<QString, const char*> cases[]{
        {QString(), ""},
        {u"a+b=c?"_qs, "a%2Bb%3Dc%3F"},
        {u"a b&c/d:e"_qs, "a%20b%26c/d:e"},
        {u"100% #\n\"<>"_qs, "100%25%20%23%0A%22%3C%3E"},
        {u"-_.!~*'();@$,"_qs, "-_.!~*'();@$,"},
        {u"é€😀"_qs, "%C3%A9%E2%82%AC%F0%9F%98%80"},
        {u"a"_qs + QChar(0xd83d) + u'b', "a%EF%BF%BDb"},
    };
    for (const auto& [text, escaped] : cases)
        EXPECT_EQ(ServerRequests::urlEncodeValue(text), QLatin1StringView(escaped))
            << text.toStdString();
}

TEST_F(ServerRequestsTest, AsksForTheAddressAndShowsTheAnswer)
{
    struct Case
    {
        QString path;
        QString text;
        const char* asked;
    };
    for (const Case& c : {
             Case{u"run?code=TEXTORCODE"_qs, u"a+b=c?"_qs, "GET /run?code=a%2Bb%3Dc%3F HTTP"},
             Case{u"TEXTORCODE?x=TEXTORCODE&y=1"_qs, u"é"_qs, "GET /%C3%A9?x=%C3%A9&y=1 HTTP"},
             Case{u"q=TEXTORCODE"_qs, u"TEXTORCODE TEXTORCODE"_qs,
                  "GET /q=TEXTORCODE%20TEXTORCODE HTTP"},
             Case{u"plain/path?textorcode=%20%2F"_qs, u"x"_qs,
                  "GET /plain/path?textorcode=%20%2F HTTP"},
         }) {
        WebServer server(
            [](QTcpSocket& socket, const QByteArray&) { socket.write(answerOf("größer <b>\n")); });
        ServerRequests requests(
            plugins, [this] { return form; }, limits);
        QSignalSpy running(&requests, &ServerRequests::runningChanged);
        requests.urlRequestWithURL(server.url(c.path), TextSnapshot(c.text), false);
        EXPECT_TRUE(requests.isRunning());
        EXPECT_EQ(requests.hosts(), QStringList(u"127.0.0.1"_qs));
        const Alert alert = nextAlert(requests);
        EXPECT_EQ(alert.title, u"Server Response"_qs);
        EXPECT_EQ(alert.message, u"größer <b>\n"_qs);
        EXPECT_FALSE(requests.isRunning());
        EXPECT_EQ(running.count(), 2);
        ASSERT_EQ(server.requests.size(), 1);
        EXPECT_TRUE(server.requests[0].startsWith(c.asked)) << server.requests[0].constData();
        EXPECT_TRUE(server.requests[0].contains("Cache-Control: no-cache"));
    }
}

TEST_F(ServerRequestsTest, WhateverTheServerSaysIsAnAnswer)
{
    struct Case
    {
        const char* name;
        QByteArray answer;
        const char* title;
        QString message;
    };
    const Case cases[]{
        {"nothing", answerOf(""), "Server Response", QString()},
        {"an error of its own", answerOf("no such page", "404 Not Found"), "Server Response",
         u"no such page"_qs},
        {"a bad request", answerOf("what?", "400 Bad Request"), "Server Response", u"what?"_qs},
        {"a fault", answerOf("oh", "500 Internal Server Error"), "Server Response", u"oh"_qs},
        {"not UTF-8", answerOf("a\xff\xfe"), "Server Response", QString()},
        {"half a character", answerOf("a\xc3"), "Server Response", QString()},
        {"as much as there may be", answerOf(QByteArray(1000, 'x')), "Server Response",
         QString(1000, u'x')},
        {"more", answerOf(QByteArray(1001, 'x')), "Error!",
         u"The answer of 127.0.0.1 is too long to be shown: it has more than %1."_qs.arg(
             QLocale().formattedDataSize(1000))},
    };
    for (const Case& c : cases) {
        const Alert alert = ask(c.answer);
        EXPECT_EQ(alert.title, QLatin1StringView(c.title)) << c.name;
        EXPECT_EQ(alert.message, c.message) << c.name;
    }
}

TEST_F(ServerRequestsTest, FailuresSayWhatIsWrong)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const QString refused = QStringLiteral("http://127.0.0.1:%1/").arg(closed.serverPort());
    closed.close();
    const std::pair<QString, const char*> cases[]{
        {refused, "refused"},
        {u"file:///etc/passwd"_qs, "file:///etc/passwd"},
        {u"ftp://127.0.0.1/"_qs, "no address of a web server"},
        {u"http://127.0.0.1/a b"_qs, "no address of a web server"},
        {u"127.0.0.1/x"_qs, "no address of a web server"},
        {QString(), "no address of a web server"},
    };
    for (const auto& [url, message] : cases) {
        ServerRequests requests(
            plugins, [this] { return form; }, limits);
        QSignalSpy alerts(&requests, &ServerRequests::alertRequested);
        requests.urlRequestWithURL(url, {}, false);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !alerts.isEmpty(); }, 10'000));
        EXPECT_EQ(alerts[0][0].toString(), u"Error!"_qs);
        EXPECT_TRUE(alerts[0][1].toString().contains(QLatin1StringView(message)))
            << alerts[0][1].toString().toStdString();
        EXPECT_FALSE(requests.isRunning());
    }
    // Half an answer is none.
    EXPECT_EQ(ask("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf").title, u"Error!"_qs);
    EXPECT_EQ(ask("nonsense\r\n\r\n").title, u"Error!"_qs);
}

TEST_F(ServerRequestsTest, GoesWhereItIsSentButNeitherToFilesNorForEver)
{
    WebServer server([&](QTcpSocket& socket, const QByteArray& path) {
        if (path == "/once")
            socket.write(redirectTo("/there"));
        else if (path == "/file")
            socket.write(redirectTo("file:///etc/passwd"));
        else if (path == "/round")
            socket.write(redirectTo("/round"));
        else
            socket.write(answerOf("there"));
    });
    ServerRequests requests(
        plugins, [this] { return form; }, limits);
    const auto titleFor = [&](const QString& path) {
        requests.urlRequestWithURL(server.url(path), {}, false);
        const Alert alert = nextAlert(requests);
        EXPECT_FALSE(alert.message.contains(u"root:"));
        return alert.title;
    };
    EXPECT_EQ(titleFor(u"once"_qs), u"Server Response"_qs);
    EXPECT_EQ(server.requests.size(), 2);
    EXPECT_EQ(titleFor(u"file"_qs), u"Error!"_qs);
    server.requests.clear();
    EXPECT_EQ(titleFor(u"round"_qs), u"Error!"_qs);
    EXPECT_EQ(server.requests.size(), 4);
}

TEST_F(ServerRequestsTest, TimeRunsOutForSilenceAndForDrips)
{
    limits.time = 400ms;
    for (const bool drips : {false, true}) {
        WebServer server([&](QTcpSocket& socket, const QByteArray&) {
            if (!drips)
                return;
            socket.write("HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n");
            auto* timer = new QTimer(&socket);
            QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
            timer->start(20);
        });
        ServerRequests requests(
            plugins, [this] { return form; }, limits);
        requests.urlRequestWithURL(server.url({}), {}, false);
        QSignalSpy alerts(&requests, &ServerRequests::alertRequested);
        const Alert alert = nextAlert(requests);
        EXPECT_EQ(alert.title, u"Error!"_qs);
        EXPECT_EQ(alert.message, u"127.0.0.1 did not answer within 0.4 seconds."_qs);
        QTest::qWait(100);
        EXPECT_EQ(alerts.count(), 1);
        EXPECT_FALSE(requests.isRunning());
    }
}

TEST_F(ServerRequestsTest, AnswersDoNotMixAndMayComeInAnyOrder)
{
    QPointer<QTcpSocket> first;
    WebServer server([&](QTcpSocket& socket, const QByteArray& path) {
        if (path == "/1") {
            first = &socket;
            socket.write("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\none");
            return;
        }
        socket.write(answerOf("two"));
        QTimer::singleShot(100, &socket, [&] { first->write("one"); });
    });
    ServerRequests requests(
        plugins, [this] { return form; }, limits);
    QSignalSpy alerts(&requests, &ServerRequests::alertRequested);
    requests.urlRequestWithURL(server.url(u"1"_qs), {}, false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !server.requests.isEmpty(); }));
    requests.urlRequestWithURL(server.url(u"2"_qs), {}, false);
    EXPECT_EQ(requests.hosts().size(), 2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return alerts.count() == 2; }));
    EXPECT_EQ(alerts[0][1].toString(), u"two"_qs);
    EXPECT_EQ(alerts[1][1].toString(), u"oneone"_qs);
}

TEST_F(ServerRequestsTest, EndsWithoutAWordWhenGivenUpOrGone)
{
    WebServer server; // says nothing
    QStringList said;
    {
        ServerRequests requests(
            plugins, [this] { return form; }, limits);
        QObject::connect(&requests, &ServerRequests::alertRequested, &server,
                         [&](const QString& title) { said += title; });
        requests.urlRequestWithURL(server.url({}), {}, false);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !server.requests.isEmpty(); }));
        requests.cancel();
        EXPECT_FALSE(requests.isRunning());
        requests.urlRequestWithURL(server.url({}), {}, false);
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.requests.size() == 2; }));
    }
    QTest::qWait(50);
    EXPECT_EQ(said, QStringList());
}

TEST_F(ServerRequestsTest, DataIsCheckedAndNotSent)
{
    WebServer server;
    const QString many = u"many units, "_qs.repeated(50'000);
    struct Case
    {
        StringEncoding encoding;
        QString text;
        bool fits;
    };
    for (const Case& c : {Case{StringEncoding::utf8, u"größer €\r\n"_qs, true},
                          Case{StringEncoding::isoLatin1, u"größer\n"_qs, true},
                          Case{StringEncoding::isoLatin1, u"€"_qs, false},
                          Case{StringEncoding::utf8, QString(QChar(0xd83d)), false},
                          Case{StringEncoding::isoLatin1, many, true},
                          Case{StringEncoding::isoLatin1, many + u'€', false}}) {
        form = {c.encoding, LineBreakFormat::windowsCrLf};
        ServerRequests requests(
            plugins, [this] { return form; }, limits);
        QSignalSpy alerts(&requests, &ServerRequests::alertRequested);
        requests.urlRequestWithURL(server.url(u"TEXTORCODE"_qs), TextSnapshot(c.text), true);
        EXPECT_FALSE(requests.isRunning());
        (void)QTest::qWaitFor([&] { return !alerts.isEmpty(); }, c.fits ? 100 : 5'000);
        ASSERT_EQ(alerts.count(), c.fits ? 0 : 1);
        if (!c.fits) {
            EXPECT_EQ(alerts[0][0].toString(), u"Error!"_qs);
            EXPECT_EQ(alerts[0][1].toString(), u"Could not create data."_qs);
        }
    }
    EXPECT_TRUE(server.requests.isEmpty());
}

TEST_F(ServerRequestsTest, SaysWhatIsMissing)
{
    ServerRequests requests(
        u"/nowhere"_qs, [this] { return form; }, limits);
    QSignalSpy alerts(&requests, &ServerRequests::alertRequested);
    requests.urlRequestWithURL(u"http://127.0.0.1/"_qs, {}, false);
    ASSERT_EQ(alerts.count(), 1);
    EXPECT_TRUE(alerts[0][1].toString().contains(u"is not installed"));
    EXPECT_FALSE(requests.isRunning());
}

TEST_F(ServerRequestsTest, TooLongATextIsNotSent)
{
    WebServer server;
    ServerRequests requests(
        plugins, [this] { return form; }, limits);
    QSignalSpy alerts(&requests, &ServerRequests::alertRequested);
    requests.urlRequestWithURL(server.url(u"TEXTORCODE"_qs), TextSnapshot(QString(101, u'x')),
                               false);
    ASSERT_EQ(alerts.count(), 1);
    EXPECT_TRUE(alerts[0][1].toString().contains(u"has 101 characters"));
    requests.urlRequestWithURL(server.url({}), TextSnapshot(QString(101, u'x')), false);
    EXPECT_TRUE(requests.isRunning()); // where it is not asked for it does not matter
}

} // namespace
} // namespace quillory
