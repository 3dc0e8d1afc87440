#include "cli/Cli.h"
#include "support/Folders.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

struct CliTest : ::testing::Test
{
    QTemporaryDir folder;
    QString out;
    QString error;

    void SetUp() override { qputenv("XDG_STATE_HOME", QFile::encodeName(folder.path())); }

    int run(const QStringList& arguments)
    {
        out.clear();
        error.clear();
        QTextStream outStream(&out);
        QTextStream errorStream(&error);
        return int(runCli(arguments, {outStream, errorStream}));
    }

    QString write(const char* name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
        return file.fileName();
    }
    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }
    QByteArray read(const char* name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }
    QJsonObject info(const QString& file)
    {
        EXPECT_EQ(
            run({QStringLiteral("info"), QStringLiteral("--format"), QStringLiteral("json"), file}),
            0)
            << error.toStdString();
        return QJsonDocument::fromJson(out.toUtf8()).object();
    }
};

TEST_F(CliTest, TransformKeepsEncodingAndLineBreaks)
{
    struct Case
    {
        const char* transform;
        QByteArray before;
        QByteArray after;
    };
    const Case cases[] = {
        {"trim", "a \t\r\n b\n", "a\r\n b\r\n"},
        {"trim", "\xEF\xBB\xBF\xC3\xA9 ", "\xEF\xBB\xBF\xC3\xA9"},
        {"zap", "a\xEF\xB7\x90", "a"},
        {"unwrap", "one\ntwo\r\nthree\n", "onetwothree"},
        {"reformat", "\t  a    b\n",
         "a"
         "b"},
        {"unwrap",
         QByteArray("\xFF\xFE"
                    "a\0\n\0b\0",
                    8),
         QByteArray("\xFF\xFE"
                    "a\0b\0",
                    6)},
    };
    for (const Case& c : cases) {
        const QString in = write("in.txt", c.before);
        const QStringList arguments{QStringLiteral("transform"), QString::fromLatin1(c.transform),
                                    in};
        EXPECT_EQ(run(arguments + QStringList(path("out.txt"))), 0) << error.toStdString();
        EXPECT_EQ(read("out.txt"), c.after) << c.transform;
        QBuffer buffer;
        ASSERT_TRUE(buffer.open(QBuffer::WriteOnly));
        QTextStream bytes(&buffer);
        QTextStream errorStream(&error);
        EXPECT_EQ(runCli(arguments, {bytes, errorStream}), ExitStatus::Success);
        EXPECT_EQ(buffer.data(), c.after) << c.transform;
    }
    EXPECT_EQ(run({QStringLiteral("transform")}), 2);
    EXPECT_EQ(run({QStringLiteral("transform"), QStringLiteral("spin"), path("in.txt")}), 2);
    EXPECT_EQ(run({QStringLiteral("transform"), QStringLiteral("trim"), path("none.txt")}), 1);
    EXPECT_TRUE(error.contains(QStringLiteral("none.txt"))) << error.toStdString();
}

TEST_F(CliTest, InfoTellsWhatAFileIs)
{
    QFile list(QStringLiteral(QUILLORY_SOURCE_DIR "/tests/document/data/binary.plist"));
    ASSERT_TRUE(list.open(QFile::ReadOnly));
    struct Case
    {
        const char* name;
        QByteArray bytes;
        const char* kind;
        qint64 encoding;
        const char* encodingName;
        int lbFormat;
        int plistKind;
    };
    const Case cases[] = {
        {"a.txt", "x\r\ny\r\n", "Text Document", 4, "Unicode (UTF-8)", 3, 0},
        {"b.txt", QByteArray("\xFE\xFF\0x\0\r", 6), "Text Document", 10, "Unicode (UTF-16)", 2, 0},
        {"c.bin", QByteArray(400, '\0') + "\xFF\xFE\x01", "Text Document", 0, "unknown", 0, 0},
        {"d.plist", "{ a = b; }", "Plist Document", 4, "Unicode (UTF-8)", 1, 0},
        {"e.plist", list.readAll(), "Plist Document", 4, "Unicode (UTF-8)", 1, 3},
    };
    for (const Case& c : cases) {
        const QJsonObject told = info(write(c.name, c.bytes));
        const QJsonObject expected{
            {QStringLiteral("kind"), QString::fromLatin1(c.kind)},
            {QStringLiteral("encoding"), c.encoding},
            {QStringLiteral("encodingName"), QString::fromLatin1(c.encodingName)},
            {QStringLiteral("lbFormat"), c.lbFormat},
            {QStringLiteral("plistKind"), c.plistKind}};
        EXPECT_EQ(told, expected) << c.name << out.toStdString();
    }
    EXPECT_EQ(run({QStringLiteral("info"), path("e.plist")}), 0);
    EXPECT_TRUE(out.contains(QStringLiteral("Property list: binary"))) << out.toStdString();
}

TEST_F(CliTest, ConvertWritesEncodingsBreaksAndKinds)
{
    const QString source = write("in.txt", "gr\xC3\xBC\xC3\x9F\nzwei\n");
    const auto convert = [&](QStringList options, const QString& in, const char* target) {
        return run(QStringList(QStringLiteral("convert")) + options +
                   QStringList{in, path(target)});
    };
    const auto option = [](const char* name, const char* value) {
        return QStringList{QString::fromLatin1(name), QString::fromLatin1(value)};
    };
    EXPECT_EQ(convert(option("--encoding", "ISO-8859-1") + option("--line-breaks", "windows"),
                      source, "latin1.txt"),
              0)
        << error.toStdString();
    EXPECT_EQ(read("latin1.txt"), "gr\xFC\xDF\r\nzwei\r\n");
    EXPECT_EQ(
        convert(option("--encoding", "10") + option("--line-breaks", "mac"), source, "utf16.txt"),
        0);
    EXPECT_TRUE(read("utf16.txt").startsWith(QByteArray("\xFF\xFEg\0", 4)));

    EXPECT_EQ(convert(option("--as", "archive"), path("latin1.txt"), "archive.quillory"), 0);
    const QJsonObject archive = info(path("archive.quillory"));
    EXPECT_EQ(archive[QStringLiteral("kind")].toString(), QStringLiteral("Quillory Document"));
    EXPECT_EQ(archive[QStringLiteral("lbFormat")].toInt(), 3);
    EXPECT_EQ(convert(option("--as", "text") + option("--encoding", "utf-8") +
                          option("--line-breaks", "unix"),
                      path("archive.quillory"), "back.txt"),
              0);
    EXPECT_EQ(read("back.txt"), read("in.txt"));

    EXPECT_EQ(convert(option("--from", "macintosh"), write("mac.txt", "\x8A"), "mac-out.txt"), 0);
    EXPECT_EQ(read("mac-out.txt"), "\x8A");

    // A property list becomes what saving it would write.
    QFile::copy(QStringLiteral(QUILLORY_SOURCE_DIR "/tests/document/data/binary.plist"),
                path("binary.plist"));
    EXPECT_EQ(convert({}, path("binary.plist"), "xml.plist"), 0);
    EXPECT_TRUE(
        read("xml.plist").startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE"));
}

TEST_F(CliTest, FailuresSayWhatAndAnswerOneUsageTwo)
{
    const QString source = write("in.txt", "\xE6\x97\xA5");
    const QString info = QStringLiteral("info");
    const QString convert = QStringLiteral("convert");
    struct Case
    {
        QStringList arguments;
        int status;
        const char* says;
    };
    const Case cases[] = {
        {{}, 2, "no command"},
        {{QStringLiteral("frobnicate")}, 2, "frobnicate"},
        {{info}, 2, "one file"},
        {{info, QStringLiteral("--format"), QStringLiteral("xml"), source}, 2, "--format"},
        {{info, QStringLiteral("--nonsense"), source}, 2, "nonsense"},
        {{info, path("missing.txt")}, 1, "missing.txt"},
        {{info, folder.path()}, 1, "folder"},
        {{convert, source}, 2, "the file to write"},
        {{convert, QStringLiteral("--encoding"), QStringLiteral("klingon"), source, path("o")},
         2,
         "klingon"},
        {{convert, QStringLiteral("--encoding"), QStringLiteral("5"), source, path("o")},
         1,
         "U+65E5"},
        {{convert, source, path("no/such/folder")}, 1, "folder does not exist"},
        {{convert, write("binary", QByteArray(300, '\0') + "\xFF\xFE\x01"), path("o")},
         1,
         "--from"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(run(c.arguments), c.status) << c.arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_TRUE(error.contains(QString::fromLatin1(c.says))) << error.toStdString();
        EXPECT_TRUE(out.isEmpty());
    }
    EXPECT_FALSE(QFile::exists(path("o")));
    EXPECT_TRUE(QDir(path("Quillory/Recovery")).isEmpty()); // what was read is still where it was
    EXPECT_EQ(run({QStringLiteral("--help")}), 0);
    EXPECT_TRUE(out.contains(QStringLiteral("convert")));
}

TEST_F(CliTest, DefinitionsListsWhatIsInstalledAndItsFaults)
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
    const QString definitions = QStringLiteral("definitions");
    const QStringList json{definitions, QStringLiteral("--format"), QStringLiteral("json")};
    const auto titles = [&] {
        EXPECT_EQ(run(json), 0);
        QStringList result;
        const QJsonObject told = QJsonDocument::fromJson(out.toUtf8()).object();
        for (const QJsonValue definition : told[QStringLiteral("definitions")].toArray())
            result.append(definition[QStringLiteral("title")].toString());
        return result;
    };
    const QStringList shipped = titles(); // before the first start
    EXPECT_TRUE(shipped.contains(QStringLiteral("PHP")));
    EXPECT_TRUE(shipped.contains(QStringLiteral("Text")));

    QDir().mkpath(path("Quillory/Definitions"));
    write("Quillory/Definitions/lab.plist",
          "{ title = Lab; extensions = (la, lb); isDefault = 1; keywords = 7; "
          "functionDefinition = \"(\"; }");
    write("Quillory/Definitions/broken.plist", "{");
    EXPECT_EQ(titles(), (QStringList{QStringLiteral("Lab"), QStringLiteral("Text")}));
    const QJsonArray faults =
        QJsonDocument::fromJson(out.toUtf8()).object()[QStringLiteral("faults")].toArray();
    ASSERT_EQ(faults.size(), 3);
    EXPECT_EQ(faults[2][QStringLiteral("key")], QStringLiteral("functionDefinition"));

    EXPECT_EQ(run({definitions}), 0);
    EXPECT_TRUE(out.startsWith(QStringLiteral("Lab (for new documents)\n  Extensions: la lb\n")));
    EXPECT_EQ(error.count(QLatin1Char('\n')), 3);
    EXPECT_TRUE(error.contains(QStringLiteral("broken.plist")));
    EXPECT_TRUE(error.contains(QStringLiteral("keywords")));
    EXPECT_EQ(run({definitions, QStringLiteral("x")}), 2);
    EXPECT_EQ(run({definitions, QStringLiteral("--format"), QStringLiteral("x")}), 2);
}

TEST_F(CliTest, HighlightWritesTheColoursOfALanguage)
{
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
    qputenv("QUILLORY_RESOURCES", QUILLORY_SOURCE_DIR "/resources");
    const QString definition = write("Tiny.plist", R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>title</key><string>Tiny</string>
<key>keywords</key><array><string>if</string></array>
<key>autocompleteWords</key><array><string>do</string></array>
<key>firstString</key><string>"</string></dict></plist>)");
    const QString theme = write("Red.plist", R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>keyword</key><dict><key>R</key><integer>255</integer>
<key>A</key><real>1</real></dict></dict></plist>)");
    const QString source = write("a.tiny", "if \"\x1b\"\nx if do\n");
    const auto highlight = [&](const QStringList& options) {
        return run(QStringList{QStringLiteral("highlight")} + options + QStringList{source});
    };
    const QStringList tiny{QStringLiteral("--definition"), definition};
    const QStringList json{QStringLiteral("--format"), QStringLiteral("json")};
    const QStringList red{QStringLiteral("--theme"), theme};
    const auto parsed = [&] {
        return QString::fromUtf8(
            QJsonDocument::fromJson(out.toUtf8()).toJson(QJsonDocument::Compact));
    };
    ASSERT_EQ(highlight(tiny + json), 0) << error.toStdString();
    EXPECT_EQ(parsed(), QStringLiteral("[[0,2,\"keyword\"],[3,3,\"string\"],[9,2,\"keyword\"],"
                                       "[12,2,\"keyword\"]]"));
    ASSERT_EQ(
        highlight(tiny + json + QStringList{QStringLiteral("--range"), QStringLiteral("8,1")}), 0);
    EXPECT_EQ(parsed(), QStringLiteral("[[9,2,\"keyword\"],[12,2,\"keyword\"]]"));
    ASSERT_EQ(highlight(tiny + red), 0);
    EXPECT_EQ(out, QStringLiteral("\x1b[38;2;255;0;0mif\x1b[0m \x1b[38;2;0;0;0m\"␛\"\x1b[0m\nx "
                                  "\x1b[38;2;255;0;0mif\x1b[0m \x1b[38;2;255;0;0mdo\x1b[0m\n"));
    ASSERT_EQ(highlight(tiny + QStringList{QStringLiteral("--format"), QStringLiteral("html")}), 0);
    EXPECT_TRUE(out.contains(QStringLiteral("x <span class=\"keyword\">if</span>")));
    ASSERT_EQ(highlight(json), 0); // no definition claims the extension
    EXPECT_EQ(parsed(), QStringLiteral("[]"));

    struct Case
    {
        QStringList arguments;
        const char* says;
    };
    const Case cases[] = {
        {{QStringLiteral("--definition"), QStringLiteral("Klingon")}, "quillory-cli definitions"},
        {{QStringLiteral("--theme"), QStringLiteral("Klingon")}, "Solarized_Light"},
        {{QStringLiteral("--range"), QStringLiteral("0,999")}, "15"},
        {{QStringLiteral("--default"), QStringLiteral("a=yes")}, "ColourMultiLineStrings"},
        {{QStringLiteral("--format"), QStringLiteral("pdf")}, "json"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(highlight(c.arguments), 2) << c.says;
        EXPECT_TRUE(error.contains(QString::fromLatin1(c.says))) << error.toStdString();
    }
}

TEST_F(CliTest, PreviewWritesThePageOfAFile)
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
    qputenv("QUILLORY_RESOURCES", QUILLORY_SOURCE_DIR "/resources");
    const QString preview = QStringLiteral("preview");
    const QString markdown = write("a.md", "# T\xC3\xAF & b\n\n- *one*\n");
    const QString latin = write("a.html", "<!DOCTYPE html>\r\n<p>caf\xE9</p>\r\n");

    ASSERT_EQ(run({preview, markdown, path("out.html")}), 0) << error.toStdString();
    const QByteArray page = read("out.html");
    EXPECT_TRUE(page.contains("<title>T\xC3\xAF &amp; b</title>")) << page.toStdString();
    EXPECT_TRUE(page.contains("<li><em>one</em></li>"));
    EXPECT_TRUE(page.contains("prefers-color-scheme")); // the style sheet is in it

    ASSERT_EQ(run({preview, latin, path("out.html")}), 0);
    EXPECT_EQ(read("out.html"), "\xEF\xBB\xBF<!DOCTYPE html>\r\n<p>caf\xC3\xA9</p>\r\n");
    ASSERT_EQ(run({preview, QStringLiteral("--base"), QStringLiteral("https://example.org/a/"),
                   latin, path("out.html")}),
              0);
    EXPECT_TRUE(
        read("out.html").contains("<!DOCTYPE html>\r\n<base href=\"https://example.org/a/\">"));
    ASSERT_EQ(run({preview, QStringLiteral("--definition"), QStringLiteral("Markdown"), latin,
                   path("out.html")}),
              0);
    EXPECT_TRUE(read("out.html").contains("<main>"));

    const QByteArray before = read("out.html");
    EXPECT_EQ(run({preview, path("missing.md"), path("out.html")}), 1);
    EXPECT_TRUE(error.contains(QStringLiteral("missing.md")));
    EXPECT_EQ(read("out.html"), before);
    EXPECT_EQ(run({preview, markdown, path("no/such/folder")}), 1);
    EXPECT_EQ(run({preview, markdown}), 2);
}

TEST_F(CliTest, FindListsPlaces)
{
    const QString find = QStringLiteral("find");
    const QString file = write("a.txt", "one\r\n\xC3\xA9 Two one\r\n");
    ASSERT_EQ(run({find, QStringLiteral("ONE"), file}), 0) << error.toStdString();
    EXPECT_EQ(out, QStringLiteral("1:1: one\n2:7: é Two one\n"));
    ASSERT_EQ(run({find, QStringLiteral("--match-case"), QStringLiteral("--whole-words"),
                   QStringLiteral("tw"), file}),
              0);
    EXPECT_EQ(out, QString());
    ASSERT_EQ(run({find, QStringLiteral("--regex"), QStringLiteral("--format"),
                   QStringLiteral("json"), QStringLiteral("T\\w+"), file}),
              0);
    const QJsonArray places = QJsonDocument::fromJson(out.toUtf8()).array();
    ASSERT_EQ(places.size(), 1);
    EXPECT_EQ(places[0].toObject(), (QJsonObject{{QStringLiteral("location"), 7},
                                                 {QStringLiteral("length"), 3},
                                                 {QStringLiteral("line"), 2},
                                                 {QStringLiteral("column"), 3},
                                                 {QStringLiteral("text"), QStringLiteral("Two")}}));
    EXPECT_EQ(run({find, QStringLiteral("--regex"), QStringLiteral("("), file}), 2);
    EXPECT_EQ(run({find, file}), 2);
}

TEST_F(CliTest, ListsFunctions)
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
    qputenv("QUILLORY_RESOURCES", QUILLORY_SOURCE_DIR "/resources");
    const QString source = write("a.py", "x = 1\r\ndef f(a):\r\n    pass\r\nclass G:\r\n");
    const QString definition = write("Tiny.plist", R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>title</key><string>Tiny</string>
<key>functionDefinition</key><string>^x.*\s+.*</string></dict></plist>)");
    const auto functions = [&](const QStringList& arguments) {
        return run(QStringList{QStringLiteral("functions")} + arguments);
    };
    const auto parsed = [&] {
        return QString::fromUtf8(
            QJsonDocument::fromJson(out.toUtf8()).toJson(QJsonDocument::Compact));
    };
    const QStringList json{QStringLiteral("--format"), QStringLiteral("json")};
    const QStringList as{QStringLiteral("--definition")};
    ASSERT_EQ(functions({source}), 0) << error.toStdString();
    EXPECT_EQ(out, QStringLiteral("2\t\t f(a)\n4\t\t class G\n"));
    ASSERT_EQ(functions(json + QStringList{source}), 0);
    EXPECT_EQ(parsed(), QStringLiteral("[{\"lineNumber\":2,\"name\":\"f(a)\"},"
                                       "{\"lineNumber\":4,\"name\":\"class G\"}]"));
    ASSERT_EQ(functions(json + as + QStringList{QStringLiteral("C"), source}), 0);
    EXPECT_EQ(parsed(), QStringLiteral("[]"));
    ASSERT_EQ(functions(as + QStringList{definition, source}), 0);
    EXPECT_EQ(out, QStringLiteral("1\t\t x = 1 def f(a):\n")); // of two lines
    ASSERT_EQ(functions({write("empty.py", "")}), 0);
    EXPECT_EQ(out, QString());

    EXPECT_EQ(functions({}), 2);
    EXPECT_EQ(functions(as + QStringList{QStringLiteral("Klingon"), source}), 2);
    EXPECT_EQ(functions({QStringLiteral("--format"), QStringLiteral("xml"), source}), 2);
    EXPECT_EQ(functions({path("missing.py")}), 1);
    EXPECT_EQ(functions({write("bytes.py", QByteArray(300, '\0') + "\x01\xff\xfe\x80")}), 1);
}

TEST_F(CliTest, StatisticsCountsAFileOrARangeOfIt)
{
    const QString file = write("a.txt", "a, b\r\n"
                                        "caf\xC3\xA9 1,000\n");
    const auto told = [&](const QStringList& options) {
        EXPECT_EQ(run(QStringList(QStringLiteral("statistics")) + options + QStringList(file)), 0)
            << error.toStdString();
        return QJsonDocument::fromJson(out.toUtf8()).object();
    };
    const auto counts = [](int characters, int withoutSpaces, int words, const QJsonValue& lines) {
        return QJsonObject{{QStringLiteral("characters"), characters},
                           {QStringLiteral("charactersWithoutSpaces"), withoutSpaces},
                           {QStringLiteral("words"), words},
                           {QStringLiteral("lines"), lines}};
    };
    const QStringList json{QStringLiteral("--format"), QStringLiteral("json")};
    const auto range = [](const char* value) {
        return QStringList{QStringLiteral("--range"), QString::fromLatin1(value)};
    };
    EXPECT_EQ(told(json), counts(17, 15, 4, 3));
    EXPECT_EQ(told(json + range("3,5")), counts(5, 5, 2, QJsonValue()));
    EXPECT_EQ(told(json + range("17,0")), counts(0, 0, 0, QJsonValue()));
    told({});
    EXPECT_EQ(out, u"Characters:     17\nWithout spaces: 15\nWords:          4\n"
                   u"Lines:          3\n");
    told(range("0,4"));
    EXPECT_EQ(out, u"Characters:     4\nWithout spaces: 3\nWords:          2\n");
    for (const char* wrong : {"", "3", "0,18", "-1,2", "a,b", "1,2,3"})
        EXPECT_EQ(run(QStringList(QStringLiteral("statistics")) + range(wrong) + QStringList(file)),
                  2)
            << wrong;
    EXPECT_EQ(run({QStringLiteral("statistics"), path("none.txt")}), 1);
}

TEST_F(CliTest, SniffRanksEncodings)
{
    const QString file = write("a.txt", "\xF0\xD2\xC9\xD7\xC5\xD4, \xCD\xC9\xD2!");
    EXPECT_EQ(run({QStringLiteral("sniff"), file}), 0);
    EXPECT_TRUE(out.startsWith(u"2147486210 (Cyrillic (KOI8-R))\n")) << out.toStdString();
    EXPECT_TRUE(out.contains(u"4 (Unicode (UTF-8)), 9 errors\n")) << out.toStdString();
    EXPECT_EQ(
        run({QStringLiteral("sniff"), QStringLiteral("--format"), QStringLiteral("json"), file}),
        0);
    const QJsonArray list = QJsonDocument::fromJson(out.toUtf8()).array();
    EXPECT_EQ(list.first().toObject(),
              (QJsonObject{{QStringLiteral("encoding"), 2147486210LL},
                           {QStringLiteral("encodingName"), QStringLiteral("Cyrillic (KOI8-R)")},
                           {QStringLiteral("errors"), 0}}));
    EXPECT_GT(list.size(), 50);
    EXPECT_EQ(run({QStringLiteral("sniff"), path("none.txt")}), 1);
    EXPECT_TRUE(error.contains(QStringLiteral("none.txt"))) << error.toStdString();
}

} // namespace
} // namespace quillory
