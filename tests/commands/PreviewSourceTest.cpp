#include "commands/PreviewSource.h"
#include "commands/PreviewBase.h"

#include "support/Folders.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;

constexpr const char* mark = "\xef\xbb\xbf";

QByteArray pageOf(const QString& text, const QUrl& server = {})
{
    const PreviewSource source{TextSnapshot(text), PreviewSource::html, server, {}};
    return source.page();
}

QByteArray bodyOf(const QByteArray& markdown)
{
    const PreviewSource source{
        TextSnapshot(QString::fromUtf8(markdown)), PreviewSource::markdown, {}, {}};
    const QByteArray page = source.page();
    const qsizetype start = page.indexOf("<main>\n") + 7;
    return page.mid(start, page.lastIndexOf("</main>") - start);
}

TEST(PreviewSourceTest, LinksLeadToTheBaseAddressOrTheDocumentsFolder)
{
    const QTemporaryDir folder;
    const QString real = folder.path();
    const struct
    {
        QString baseURL;
        QString documentPath;
        QString folder;
        QString path;
        QUrl server;
    } cases[] = {
        {u""_s, u"/home/x/page one.html"_s, u"/home/x"_s, u"/home/x/page one.html"_s, {}},
        {u""_s, u""_s, u""_s, u"/"_s, {}},
        {u" https://a.example/b/ "_s, u"/home/x/page.html"_s, u""_s, u"/"_s,
         QUrl(u"https://a.example/b/"_s)},
        {u"file:///srv/site/"_s,
         u"/home/x/page.html"_s,
         u"/srv/site"_s,
         u"/srv/site/page.html"_s,
         {}},
        {u"file:///srv/site/index.html"_s,
         u"/home/x/page.html"_s,
         u"/srv/site"_s,
         u"/srv/site/page.html"_s,
         {}},
        {u"/srv/a/../site/"_s,
         u"/home/x/page.html"_s,
         u"/srv/site"_s,
         u"/srv/site/page.html"_s,
         {}},
        {real, u"/home/x/page.html"_s, real, real + u"/page.html"_s, {}},
        {u"file:///srv/site/"_s, u""_s, u"/srv/site"_s, u"/srv/site/"_s, {}},
        {u"file:///"_s, u""_s, u"/"_s, u"/"_s, {}},
        // No address, or one that no page can have
        {u"javascript:alert(1)"_s,
         u"/home/x/page.html"_s,
         u"/home/x"_s,
         u"/home/x/page.html"_s,
         {}},
        {u"http:///"_s, u"/home/x/page.html"_s, u"/home/x"_s, u"/home/x/page.html"_s, {}},
        {u"relative/"_s, u"/home/x/page.html"_s, u"/home/x"_s, u"/home/x/page.html"_s, {}},
    };
    for (const auto& expected : cases) {
        const PreviewBase base = PreviewBase::of(expected.baseURL, expected.documentPath);
        const std::string what = expected.baseURL.toStdString();
        EXPECT_EQ(base.folder.toStdString(), expected.folder.toStdString()) << what;
        EXPECT_EQ(base.path.toStdString(), expected.path.toStdString()) << what;
        EXPECT_EQ(base.server, expected.server) << what;
    }
}

TEST(PreviewSourceTest, HtmlStaysAsItStands)
{
    EXPECT_EQ(pageOf(u""_s), mark);
    EXPECT_EQ(pageOf(u"<meta charset=latin1>gr\u00fcn \U0001F600"_s),
              mark + "<meta charset=latin1>gr\u00fcn \U0001F600"_ba);
    const QByteArray unpaired = pageOf(QString(QChar(0xd83d)) + u'x');
    EXPECT_TRUE(unpaired.endsWith('x') && QString::fromUtf8(unpaired.mid(3)).size() == 2);
}

TEST(PreviewSourceTest, AServersAddressGoesIntoTheHead)
{
    const QUrl server(u"https://a.example/b/?c=\"d\"&e"_s);
    const QString base = u"<base href=\"https://a.example/b/?c=%22d%22&amp;e\">"_s;
    const std::pair<QString, QString> cases[] = {
        {u"<p>x"_s, base + u"<p>x"_s},
        {u"<!DOCTYPE html>\n<html><head>"_s, u"<!DOCTYPE html>\n"_s + base + u"<html><head>"_s},
        {u" <!-- a > b --><?xml version='1.0'?><!doctype HTML PUBLIC 'x'><html>"_s,
         u" <!-- a > b --><?xml version='1.0'?><!doctype HTML PUBLIC 'x'>"_s + base + u"<html>"_s},
        // The text's own comes later, so that what it says is taken along.
        {u"<head><base target=_top href='sub/'>"_s,
         u"<base href=\"https://a.example/b/sub/\"><head><base target=_top href='sub/'>"_s},
        {u"<BASE HREF=http://other.example/>"_s,
         u"<base href=\"http://other.example/\"><BASE HREF=http://other.example/>"_s},
    };
    for (const auto& [text, page] : cases)
        EXPECT_EQ(pageOf(text, server).mid(3).toStdString(), page.toStdString());
}

TEST(PreviewSourceTest, MarkdownIsGitHubs)
{
    const std::pair<const char*, const char*> cases[] = {
        {"~~gone~~ **bold**\n", "<p><del>gone</del> <strong>bold</strong></p>\n"},
        {"```c++\na<b\n```\n", "<pre><code class=\"language-c++\">a&lt;b\n</code></pre>\n"},
        {"- [ ] open\n- [x] done\n",
         "<ul>\n<li class=\"task-list-item\"><input type=\"checkbox\" "
         "class=\"task-list-item-checkbox\""
         " disabled>open</li>\n<li class=\"task-list-item\"><input type=\"checkbox\""
         " class=\"task-list-item-checkbox\" disabled checked>done</li>\n</ul>\n"},
        {"a|b\n:--|--:\n1|2\n",
         "<table>\n<thead>\n<tr>\n<th align=\"left\">a</th>\n<th align=\"right\">b</th>\n</tr>\n"
         "</thead>\n<tbody>\n<tr>\n<td align=\"left\">1</td>\n<td align=\"right\">2</td>\n</tr>\n"
         "</tbody>\n</table>\n"},
        {"see https://a.example/b.\n",
         "<p>see <a href=\"https://a.example/b\">https://a.example/b</a>.</p>\n"},
        {"<b>as it stands</b>\n", "<p><b>as it stands</b></p>\n"},
        // What links inside the page are to be found by
        {"# One *two* & `three`!\n## One two  three\n### \xc3\x84rger_1\n",
         "<h1 id=\"one-two--three\">One <em>two</em> &amp; <code>three</code>!</h1>\n"
         "<h2 id=\"one-two--three-1\">One two  three</h2>\n"
         "<h3 id=\"\xc3\xa4rger_1\">\xc3\x84rger_1</h3>\n"},
        {"# !\n\n<h1>\n\n# a\n", "<h1>!</h1>\n<h1>\n<h1 id=\"a\">a</h1>\n"},
    };
    for (const auto& [markdown, html] : cases)
        EXPECT_EQ(bodyOf(markdown).toStdString(), html) << markdown;
}

TEST(PreviewSourceTest, MarkdownIsAWholePage)
{
    const PreviewSource source{
        TextSnapshot(u"text\n\nA <b>title</b> & more\n===\n\n# Second\n"_s),
        PreviewSource::markdown, QUrl(u"https://a.example/"_s),
        QStringLiteral(QUILLORY_SOURCE_DIR "/resources/Preview/Markdown.css")};
    const QByteArray page = source.page();
    EXPECT_TRUE(page.startsWith(QByteArray(QByteArray(mark) + "<!DOCTYPE html>")));
    EXPECT_TRUE(page.contains("<base href=\"https://a.example/\">"));
    EXPECT_TRUE(page.contains("<title>A title &amp; more</title>")) << page.left(400).constData();
    EXPECT_TRUE(page.contains("prefers-color-scheme: dark"));
}

TEST(PreviewSourceTest, HostileMarkdownTakesLinearTime)
{
    const auto seconds = [](const QByteArray& unit, int count) {
        QElapsedTimer timer;
        timer.start();
        bodyOf(unit.repeated(count));
        return double(timer.nsecsElapsed()) / 1e9;
    };
    for (const char* unit :
         {"[",    "![",    "*a_ ",     "`",    "> ", "<!--",      "&",       "a|",       "- ",
          "[a](", "<a ",   "[a]: b\n", "*",    "\\", "a**b",      "| a |\n", "[^",       "1. ",
          "# \n", "www.a", "a@b",      "``` ", "\t", "    a\n\n", "</",      "<![CDATA["}) {
        const double few = seconds(unit, 10'000);
        const double many = seconds(unit, 80'000);
        // Quadratic work would take 64 times as long.
        EXPECT_LT(many, 30 * few + 0.5) << unit;
    }
}

} // namespace
} // namespace quillory
