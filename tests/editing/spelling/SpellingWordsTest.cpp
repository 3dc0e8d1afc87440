#include "editing/spelling/SpellingWords.h"
#include "support/Folders.h"

#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"
#include "syntax/SyntaxColouring.h"
#include "text/TextStorage.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;

/// A text in one of the languages that are shipped.
struct Source
{
    Source(const QString& definition, const QString& string)
    {
        folders.applicationSupport = QStringLiteral(QUILLORY_SOURCE_DIR "/resources");
        folders.resources = folders.applicationSupport;
        text.replaceCharactersInRange({0, 0}, string);
        colouring.setDefinitionWithTitle(definition);
        EXPECT_EQ(colouring.definition()->title(), definition);
    }

    /// The words to look up in \a range, one blank between them.
    QString words(TextRange range) const
    {
        QStringList list;
        for (const SpellingWord& word :
             spellingWords(text.snapshot(), range, SpellingScope(colouring))) {
            EXPECT_EQ(text.snapshot().string(word.range), word.word);
            list += word.word;
        }
        return list.join(u' ');
    }
    QString words() const { return words(text.snapshot().range()); }

    QTemporaryDir folder;
    ApplicationFolders folders;
    UserDefaults defaults{folder.filePath(u"defaults.conf"_s)};
    TextStorage text;
    Overlay overlay;
    SyntaxColouring colouring{text, overlay, folders, defaults};
};

struct Case
{
    const char* definition;
    const char* text;
    const char* words;
};

TEST(SpellingWordsTest, whatIsLookedUp)
{
    const Case cases[]{
        // Words and their form.
        {"Text", "Teh quick, brown-eyed fox (isn't) “naïve”.",
         "Teh quick brown eyed fox isn't naïve"},
        {"Text", "don’t Straße привет", "don’t Straße привет"},
        {"Text", "a I x 4th utf8 snake_case camelCase PageView McCoy GUIs", ""},
        {"Text", "USA HTML5 UNESCO STOPPED", "UNESCO STOPPED"},
        {"Text", "日本語 ひらがな 12 3.5", ""},
        {"Text", "e.g. readme.txt example.com end.", "end"},
        // What stands around them.
        {"Text", "see https://wrld.example/a-b?c=dd or www.foo.org, mail jo@bar.org",
         "see or mail"},
        {"Text", "in /usr/lib, ~/bin, ./foo, ../bar, src/app/main and/or", "in and or"},
        {"Text", "--verbose -Wall well-known #hashtag @someone $HOME call() word(s)",
         "well known word"},
        {"Text", "C:\\Windows\\Temp \\alpha", ""},
        {"Text", "use `strlen foo` or it`s\nnext `line", "use or it next line"},
        {"Text", "<https://wrld.example> (https://wrld.example) \"quoted\"", "quoted"},
        // Source code: comments, and strings that are more than a name.
        {"C++", "int wrold = 3; // the wrold of foo_bar and fooBar(x) or foo(y)\n", "the wrold of"},
        {"C++", "/* first\n * @param nmae the name: a->b, x=y, std::move, and/or\n */\n",
         "first the name"},
        {"C++", "auto s = \"hello wrold\\nNext\\tline\"; f(\"wrld\", 'c');\n",
         "hello wrold Next line"},
        {"C++",
         "// a bool for (a keyword) nullptr, static_cast\n//glued \\brief \"quoted\" 'it' (see "
         "below).\n",
         "keyword glued quoted it see below"},
        {"Python",
         "def wrld():\n    \"\"\"Docstrng of it.\"\"\"\n    # commnt\n    return 'no wrds'\n",
         "Docstrng of it commnt no wrds"},
        {"JSON", "{\"kye one\": \"vlue one\", \"b\": \"naem\"}", "vlue one"},
        // Markup: all but tags, commands, formulas and entities.
        {"HTML", "<p class=\"wrld foo\">Hello <b>wrold</b> caf&eacute;s &nbsp;</p> <!-- remrk -->",
         "Hello wrold remrk"},
        {"HTML", "<p>He said \"gud day\" twice</p>", "He said gud day twice"},
        {"XML", "<nme attr=\"vlue two\">Some txet</nme>", "Some txet"},
        {"LaTeX", "\\section{Introducton} We \\emph{see} $x = frac$ as %commnt\nThis\\\\\nthat",
         "Introducton We see as commnt This that"},
        {"HTML", "<script>\nvar wrld;\n</script><p>See <code>wrld x</code> ther</p><style>aa bb",
         "See ther"},
        {"LaTeX", "\\label{fig:abc} \\usepackage[opt one]{pkg} \\cite[p. 3]{knth} \\emph{wrd}",
         "wrd"},
        {"LaTeX", "Bj{\\\"o}rn and Sm\\\"orr, beauti\\-ful {ther}\\\\ next", "and ther next"},
        {"Markdown", "# Headng one\nSome **bld** and [lnk](http://wrld.example) `cde x`\n",
         "Headng one Some bld and lnk"},
        {"Markdown", "Befor\n\n```\nint wrold;\n```\n\nAfetr\n", "Befor Afetr"},
    };
    for (const Case& c : cases) {
        const Source source(QString::fromUtf8(c.definition), QString::fromUtf8(c.text));
        EXPECT_EQ(source.words().toStdString(), c.words) << c.definition << ": " << c.text;
    }
}

TEST(SpellingWordsTest, onlyWordsOfTheRangeAndThoseWhole)
{
    const Source plain(u"Text"_s, u"alpha beta gamma\ndelta"_s);
    EXPECT_EQ(plain.words({8, 4}), u"beta gamma");
    EXPECT_EQ(plain.words({5, 1}), QString());
    EXPECT_EQ(plain.words({12, 6}), u"gamma delta");
    // What is said before the range still counts.
    const Source code(u"C++"_s, u"/* one\n two */ int three; // four\n"_s);
    EXPECT_EQ(code.words({8, 12}), u"two");
}

TEST(SpellingWordsTest, aWordInALineWithoutEndIsFoundWhole)
{
    const QString half = QString(u"lorem "_s).repeated(200000);
    const Source plain(u"Text"_s, half + u"wrold "_s + half);
    EXPECT_EQ(plain.words({half.size() + 2, 1}), u"wrold");
    EXPECT_EQ(plain.words({half.size() - 1, 3}), u"wrold");
    const Source code(u"C++"_s, half + u"// wrold "_s + half);
    EXPECT_EQ(code.words({half.size() + 4, 3}), u"wrold");
}

} // namespace
} // namespace quillory
