#include "PreviewFixture.h"

#include <QFile>
#include <QTest>
#include <QUdpSocket>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

/// Long enough for what a page does by itself when it loads.
constexpr int settling = 1500; ///< milliseconds

class HostilePageTest : public PreviewFixture
{
protected:
    /// Every way of a page to the network that needs no new page.
    QByteArray pageThatCallsOut() const
    {
        QByteArray html = R"html(<!DOCTYPE html><html><head>
<link rel="dns-prefetch" href="//SERVER/"><link rel="preconnect" href="http://SERVER/">
<link rel="prefetch" href="http://SERVER/prefetch"><link rel="prerender" href="http://SERVER/prerender">
<link rel="preload" as="image" href="http://SERVER/preload"><link rel="icon" href="http://SERVER/icon">
<link rel="manifest" href="http://SERVER/manifest"><link rel="stylesheet" href="http://SERVER/sheet.css">
<link rel="modulepreload" href="http://SERVER/modulepreload.js">
<meta http-equiv="Content-Security-Policy-Report-Only" content="img-src 'none'; report-uri http://SERVER/report">
<style>@import "http://SERVER/import.css";
@font-face { font-family: F; src: url(http://SERVER/font.woff2); }
body { background: url(http://SERVER/background); font-family: F; }</style>
<script src="http://SERVER/script.js"></script></head><body>Text
<img src="http://SERVER/image"><img srcset="http://SERVER/srcset 1x"><img src="//SERVER/schemeless">
<picture><source srcset="http://SERVER/picture"><img></picture>
<iframe src="http://SERVER/frame"></iframe><iframe srcdoc="<img src='http://SERVER/srcdoc'>"></iframe>
<iframe src="data:text/html,<img src='http://SERVER/dataframe'>"></iframe>
<object data="http://SERVER/object"></object><embed src="http://SERVER/embed">
<video src="http://SERVER/video" poster="http://SERVER/poster" autoplay></video>
<audio src="http://SERVER/audio" autoplay></audio>
<svg><image href="http://SERVER/svgimage"/><use href="http://SERVER/use.svg#a"/></svg>
<form id="inframe" method="post" target="f" action="http://SERVER/post"></form><iframe name="f"></iframe>
<script>
const attempt = f => { try { f(); } catch (error) { } };
attempt(() => fetch('http://SERVER/fetch').catch(() => {}));
attempt(() => fetch('http://SERVER/nocors', {mode: 'no-cors', keepalive: true}).catch(() => {}));
attempt(() => { const x = new XMLHttpRequest(); x.open('POST', 'http://SERVER/xhr'); x.send('a'); });
attempt(() => { const x = new XMLHttpRequest(); x.open('GET', 'http://SERVER/sync', false); x.send(); });
attempt(() => navigator.sendBeacon('http://SERVER/beacon', 'a'));
attempt(() => new WebSocket('ws://SERVER/socket'));
attempt(() => new EventSource('http://SERVER/events'));
attempt(() => import('http://SERVER/module.js').catch(() => {}));
attempt(() => new Image().src = 'http://SERVER/newimage');
attempt(() => document.getElementById('inframe').submit());
attempt(() => new Worker(URL.createObjectURL(new Blob(
    ["fetch('http://SERVER/worker'); importScripts('http://SERVER/imported')"]))));
attempt(() => new SharedWorker('http://SERVER/shared'));
attempt(() => navigator.serviceWorker.register('http://SERVER/service').catch(() => {}));
attempt(() => CSS.paintWorklet.addModule('http://SERVER/worklet').catch(() => {}));
attempt(() => {
    const peer = new RTCPeerConnection({iceServers: [{urls: 'stun:UDP'},
        {urls: 'turn:UDP', username: 'a', credential: 'b'},
        {urls: 'turn:SERVER?transport=tcp', username: 'a', credential: 'b'}]});
    peer.createDataChannel('');
    peer.createOffer().then(offer => peer.setLocalDescription(offer));
});
attempt(() => new WebTransport('https://UDP/transport').ready.catch(() => {}));
</script></body></html>)html";
        html.replace("SERVER", server.address().toUtf8());
        html.replace("UDP", QByteArray("127.0.0.1:" + QByteArray::number(udp.localPort())));
        return html;
    }

    void SetUp() override
    {
        ASSERT_TRUE(udp.bind(QHostAddress::LocalHost));
        show();
    }

    RecordingServer server;
    QUdpSocket udp;
};

TEST_F(HostilePageTest, NothingReachesTheNetworkBeforeTheUserAllowsIt)
{
    load(pageThatCallsOut());
    pass(settling);
    EXPECT_EQ(server.connections, 0) << qPrintable(server.paths.join(u' '));
    EXPECT_FALSE(udp.hasPendingDatagrams());
    EXPECT_EQ(window.strip().text(), u"This page wants to load from %1."_s.arg(server.address()));

    ASSERT_TRUE(answer(u"Not Now"_s));
    load(pageThatCallsOut(), false); // as after typing
    pass(settling);
    EXPECT_EQ(window.strip().text(), QString());
    load(pageThatCallsOut(), true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.strip().text().isEmpty(); }, patience));
    pass(settling);
    EXPECT_EQ(server.connections, 0) << qPrintable(server.paths.join(u' '));
    EXPECT_FALSE(udp.hasPendingDatagrams());

    // Allowed, the same page does all of that, which shows that the attempts are real ones.
    ASSERT_TRUE(answer(u"Allow"_s));
    for (const char* path :
         {"sheet.css", "import.css", "background", "script.js", "image",  "srcset",
          "frame",     "srcdoc",     "object",     "embed",     "poster", "svgimage",
          "post",      "fetch",      "nocors",     "xhr",       "sync",   "beacon",
          "socket",    "events",     "module.js",  "newimage",  "worker"})
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.wasAskedFor(QLatin1StringView(path)); },
                                    patience / 4))
            << path;
}

TEST_F(HostilePageTest, NoWayOutOfThePageIsTakenUnasked)
{
    for (const char* attempt :
         {"location = 'http://SERVER/gone'", "location.replace('http://SERVER/gone')",
          "window.open('http://SERVER/gone')", "top.document.querySelector('a').click()",
          "document.querySelector('form').submit()",
          "document.head.innerHTML += '<meta http-equiv=refresh "
          "content=\"0;url=http://SERVER/gone\">'",
          "document.body.innerHTML += '<iframe srcdoc=\"<script>top.location = `http://SERVER/gone`"
          "</script>\"></iframe>'",
          "document.querySelector('a').download = 'x'; document.querySelector('a').click()"}) {
        const auto filled = [&](QByteArray text) {
            return text.replace("SERVER", server.address().toUtf8());
        };
        load(filled(
            "<!DOCTYPE html><head></head><body>Text<a target=_blank href='http://SERVER/gone'>"
            "</a><form method=post action='http://SERVER/gone'></form></body>"));
        script(QString::fromUtf8(filled(attempt)));
        pass(300);
        EXPECT_EQ(server.connections, 0) << attempt;
        EXPECT_EQ(window.page().url(), documentAddress()) << attempt;
        EXPECT_TRUE(answer(u"Not Now"_s) || qstrncmp(attempt, "document.body", 13) == 0) << attempt;
    }
    // What was asked for is done once it is allowed.
    script(u"location = 'http://%1/gone'"_s.arg(server.address()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return answer(u"Allow"_s); }, patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.wasAskedFor(u"gone"_s); }, patience));
}

TEST_F(HostilePageTest, AServerThatIsAllowedOpensTheWayToNoOther)
{
    RecordingServer other;
    server.answers[u"/image"_s] = RecordingServer::redirect(other.url(u"image"_s));
    server.answers[u"/fetch"_s] = RecordingServer::redirect(other.url(u"fetch"_s));
    server.answers[u"/page"_s] = RecordingServer::redirect(other.url(u"page"_s));
    load("<img src='" + server.url(u"image"_s).toUtf8() + "'><script>fetch('" +
         server.url(u"fetch"_s).toUtf8() + "', {mode: 'no-cors'}).catch(() => {})</script>");
    ASSERT_TRUE(QTest::qWaitFor([&] { return answer(u"Allow"_s); }, patience));
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return server.wasAskedFor(u"image"_s) && server.wasAskedFor(u"fetch"_s); },
        patience));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return window.strip().text().contains(other.address()); }, patience));
    script(u"location = '%1'"_s.arg(server.url(u"page"_s)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.wasAskedFor(u"page"_s); }, patience));
    pass(settling);
    EXPECT_EQ(other.connections, 0);
}

TEST_F(HostilePageTest, OnlyWhatLiesInTheFolderIsLoaded)
{
    const QByteArray picture = QByteArray::fromBase64(
        "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR4nGNgYGD4DwABBAEAX+XDSwAAAABJRU5E"
        "rkJggg==");
    const auto place = [&](const QString& inFolder, const QByteArray& name) {
        write(inFolder + u"picture.png"_s, picture);
        write(inFolder + u"script.js"_s, "seen.push('" + name + " script')");
        write(inFolder + u"sheet.css"_s, "body { --" + name + ": 1 }");
        write(inFolder + u"frame.html"_s,
              "<script>parent.postMessage('" + name + " frame', '*')</script>");
        write(inFolder + u"data.txt"_s, name);
    };
    place(u"sub folder/"_s, "inside");
    place(u"../"_s, "outside");
    place(u".hidden/"_s, "hidden");
    ASSERT_TRUE(QFile::link(outside.path(), folder + u"/link"_s));

    QByteArray html = "<!DOCTYPE html><head><script>const seen = []; onmessage = e => "
                      "seen.push(e.data);</script>";
    const QByteArray root = outside.path().toUtf8();
    for (const QByteArray& prefix :
         QList<QByteArray>{"sub folder/", "../", "%2e%2e/", "link/", ".hidden/",
                           "sub%20folder/../../", "file://" + root + '/', root + '/',
                           "quillory-preview:" + root + '/', "quillory-preview://" + root + '/'})
        html += "<link rel=stylesheet href='" + prefix + "sheet.css'><script src='" + prefix +
                "script.js'></script><img src='" + prefix + "picture.png' data-from='" + prefix +
                "'><iframe src='" + prefix + "frame.html'></iframe><script>for (const read of [" +
                "() => fetch('" + prefix +
                "data.txt').then(r => r.text()), () => new Promise(done " +
                "=> { const x = new XMLHttpRequest(); x.onload = () => done(x.responseText); " +
                "x.open('GET', '" + prefix + "data.txt'); x.send(); })]) try { read().then(t => " +
                "seen.push(t + ' read')).catch(() => {}) } catch (e) {}</script>";
    load(html);
    EXPECT_TRUE(becomes(u"seen.includes('inside script') && seen.includes('inside frame')"_s));
    pass(settling);
    EXPECT_EQ(script(u"seen.sort().join()"_s).toString(), u"inside frame,inside script"_s);
    EXPECT_EQ(script(u"[...document.images].filter(i => i.naturalWidth > 0)"
                     ".map(i => i.dataset.from).join()"_s)
                  .toString(),
              u"sub folder/"_s);
    EXPECT_EQ(script(u"['inside', 'outside', 'hidden'].map(n => "
                     "getComputedStyle(document.body).getPropertyValue('--' + n).trim()).join()"_s)
                  .toString(),
              u"1,,"_s);
    // What is shown cannot be looked into.
    EXPECT_EQ(script(u"[...document.querySelectorAll('iframe')].filter(f => { try { return "
                     "f.contentDocument.scripts.length } catch (e) { return false } }).length"_s)
                  .toInt(),
              0);
    for (const QString& goal :
         QStringList{u"file://"_s + outside.path() + u"/frame.html"_s, u"../frame.html"_s,
                     u"chrome://version"_s, u"view-source:page.html"_s}) {
        script(u"location = '%1'"_s.arg(goal));
        script(u"window.open('%1')"_s.arg(goal));
        pass(200);
        EXPECT_TRUE(
            script(u"!document.documentElement.outerHTML.includes('outside frame')"_s).toBool())
            << qPrintable(goal);
    }
}

TEST_F(HostilePageTest, APageOfAServerSeesNothingOfTheDisk)
{
    write(u"script.js"_s, "document.title = 'taken'");
    const QString local = documentAddress().resolved(QUrl(u"script.js"_s)).toString();
    server.answers[u"/page"_s] = RecordingServer::page(
        "<script>function go() { location = '" + documentAddress().toEncoded() +
        "' }</script><script src='" + local.toUtf8() + "'></script><p>remote</p>");
    load("<a href='" + server.url(u"page"_s).toUtf8() + "'>link</a>");
    script(u"document.querySelector('a').click()"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return answer(u"Allow"_s); }, patience));
    EXPECT_TRUE(becomes(u"document.body && document.body.innerText.includes('remote')"_s));
    script(u"go()"_s);
    pass(500);
    EXPECT_NE(window.page().title(), u"taken"_s);
    EXPECT_EQ(window.page().url(), QUrl(server.url(u"page"_s)));
}

} // namespace
} // namespace quillory::test
