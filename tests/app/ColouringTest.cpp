#include "AppFixture.h"

#include "app/ColourExport.h"
#include "app/StatusLine.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QTest>

namespace quillory::test {
namespace {

class ColouringTest : public AppFixture
{
protected:
    /// What the character of the first \a text is drawn in; none for the plain colour.
    static std::optional<Colour> colourOf(DocumentWindow& window, const char* text)
    {
        QTest::qWait(30); // settings come a little later
        const qsizetype at = textOf(window).indexOf(QLatin1StringView(text));
        return window.document().overlay().attributesAt(at).foreground;
    }

    static std::optional<Colour> colourOfRole(DocumentWindow& window, ColourRole role)
    {
        return window.document().syntaxColouring().roles().attributes(role).foreground;
    }

    void writeDefinition(const char* name, const QByteArray& content)
    {
        const QString definitions = folders.applicationSupport + QStringLiteral("/Definitions");
        QDir().mkpath(definitions);
        QFile file(definitions + u'/' + QString::fromUtf8(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
    }
};

TEST_F(ColouringTest, theWindowColoursByTheFilesLanguageAndFollowsTyping)
{
    DocumentWindow& window = open(write("a.php", "<?php\nreturn 1;\n"));
    EXPECT_EQ(window.statusLine().definitionText(), QStringLiteral("PHP"));
    ASSERT_TRUE(colourOfRole(window, ColourRole::keyword));
    EXPECT_EQ(colourOf(window, "return"), colourOfRole(window, ColourRole::keyword));
    EXPECT_FALSE(window.document().isDocumentEdited());

    press(window, {QStringLiteral("Ctrl+End"), QStringLiteral("'// note'")});
    EXPECT_EQ(colourOf(window, "note"), colourOfRole(window, ColourRole::comment));
    press(window, {QStringLiteral("Home"), QStringLiteral("'x '")});
    EXPECT_EQ(colourOf(window, "x "), std::nullopt);
}

TEST_F(ColouringTest, whatComesIntoSightIsColoured)
{
    QByteArray lines("<?php\n");
    for (int i = 0; i < 2000; ++i)
        lines += "return " + QByteArray::number(i) + ";\n";
    DocumentWindow& window = open(write("a.php", lines));
    EXPECT_EQ(colourOf(window, "return 1999"), std::nullopt);
    press(window, {QStringLiteral("Ctrl+End")});
    EXPECT_EQ(colourOf(window, "return 1999"), colourOfRole(window, ColourRole::keyword));
}

/// However far down or to the right of a line that is: one that is coloured whole, and one of which
/// only a stretch is.
TEST_F(ColouringTest, whatComesIntoSightOfAVeryLongLineIsColoured)
{
    for (const int pieces : {60'000, 900'000}) {
        const QByteArray line = "<?php " + QByteArray("return 1; ").repeated(pieces);
        for (const bool wraps : {false, true}) {
            defaults.setValue(keys::wrapLines, wraps);
            DocumentWindow& window = open(write("long.php", line));
            // Ctrl+End goes to the end of what is there.
            ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, 60'000));
            const auto keyword = colourOfRole(window, ColourRole::keyword);
            const auto isColoured = [&](TextOffset at) {
                return QTest::qWaitFor(
                    [&] {
                        return window.document().overlay().attributesAt(at).foreground == keyword;
                    },
                    60'000);
            };
            EXPECT_TRUE(isColoured(6)) << pieces << wraps;
            press(window, {QStringLiteral("Ctrl+End")});
            EXPECT_TRUE(isColoured(line.size() - 10)) << pieces << wraps;
            window.close();
        }
    }
}

TEST_F(ColouringTest, theMenusChooseLanguageAndTheme)
{
    DocumentWindow& window = open(write("a.txt", "return <b>\n"));
    EXPECT_EQ(colourOf(window, "return"), std::nullopt);
    choose(window, QStringLiteral("Format/Language/PHP"));
    EXPECT_EQ(window.statusLine().definitionText(), QStringLiteral("PHP"));
    EXPECT_EQ(colourOf(window, "return"), colourOfRole(window, ColourRole::keyword));

    const TextViewColours light = window.view().colours();
    const auto keyword = colourOfRole(window, ColourRole::keyword);
    choose(window, QStringLiteral("View/Theme/Insomniac"));
    EXPECT_GT(light.background.lightnessF(), 0.7F);
    EXPECT_LT(window.view().colours().background.lightnessF(), 0.3F);
    EXPECT_NE(colourOfRole(window, ColourRole::keyword), keyword);
    EXPECT_EQ(colourOf(window, "return"), colourOfRole(window, ColourRole::keyword));
    EXPECT_TRUE(command(window, QStringLiteral("View/Theme/Insomniac"))->isChecked());

    choose(window, QStringLiteral("Format/Language/Text"));
    EXPECT_EQ(colourOf(window, "return"), std::nullopt);
}

TEST_F(ColouringTest, theBandIsThereWhenItIsWanted)
{
    DocumentWindow& window = openNew();
    const auto band = [&] { return window.view().overlay().lineBand(); };
    EXPECT_FALSE(band());
    choose(window, QStringLiteral("View/Highlight Current Line"));
    EXPECT_TRUE(band());
    EXPECT_TRUE(defaults.value(keys::highlight));
    press(window, {QStringLiteral("'one'"), QStringLiteral("Return")});
    EXPECT_EQ(band()->range, (TextRange{4, 0}));
    press(window, {QStringLiteral("Up")});
    EXPECT_TRUE(QTest::qWaitFor([&] { return band()->range == TextRange{0, 4}; }));
    const Colour before = band()->colour;
    choose(window, QStringLiteral("View/Theme/Insomniac"));
    EXPECT_NE(band()->colour, before);
    choose(window, QStringLiteral("View/Highlight Current Line"));
    EXPECT_FALSE(band());
}

TEST_F(ColouringTest, savingUnderAnotherExtensionChangesTheLanguage)
{
    DocumentWindow& window = open(write("a.txt", "return 1;\n"));
    questions.savePath = path("a.php");
    choose(window, QStringLiteral("File/Save As…"));
    waitUntilIdle(window);
    EXPECT_EQ(window.statusLine().definitionText(), QStringLiteral("PHP"));
    EXPECT_EQ(colourOf(window, "return"), colourOfRole(window, ColourRole::keyword));
}

TEST_F(ColouringTest, exportsAPageWithTheColours)
{
    DocumentWindow& window = open(write("a.php", "<?php\nreturn \"<&\";\n"));
    questions.savePath = path("a.html");
    choose(window, QStringLiteral("File/Export as HTML…"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.colourExport().isExporting(); }));
    const QByteArray page = bytesOf(questions.savePath);
    EXPECT_TRUE(page.contains("<span class=\"keyword\">return</span>")) << page.constData();
    EXPECT_TRUE(page.contains("&lt;&amp;"));
    EXPECT_EQ(message(window, MessageArea::Subject::Export), QString());

    questions.savePath = path("nowhere/a.html");
    choose(window, QStringLiteral("File/Export as HTML…"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.colourExport().isExporting(); }));
    EXPECT_TRUE(
        message(window, MessageArea::Subject::Export).contains(QStringLiteral("nowhere/a.html")));
}

TEST_F(ColouringTest, copiesColoursForOthersAndTextForItself)
{
    DocumentWindow& window = open(write("a.php", "<?php\nreturn 1;\n"));
    QTest::qWait(30);
    window.document().textView().setSelectedRange({6, 6});
    choose(window, QStringLiteral("Edit/Copy with Colours"));
    const QMimeData& copied = *QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied.text(), QStringLiteral("return"));
    EXPECT_TRUE(copied.html().contains(QStringLiteral("color: #")));
    EXPECT_TRUE(copied.html().contains(QStringLiteral(">return</span>")))
        << qPrintable(copied.html());
    press(window, {QStringLiteral("Ctrl+End"), QStringLiteral("Ctrl+V")});
    EXPECT_EQ(textOf(window), QStringLiteral("<?php\nreturn 1;\nreturn"));
}

TEST_F(ColouringTest, aFaultyDefinitionIsNamedAndHarmsNothing)
{
    openNew().close(); // the shipped definitions are there from now on
    writeDefinition("Mine.plist",
                    "<plist version=\"1.0\"><dict><key>title</key><string>Mine</string>"
                    "<key>extensions</key><array><string>mine</string></array>"
                    "<key>keywords</key><string>word</string></dict></plist>");
    DocumentWindow& window = open(write("a.mine", "word\n"));
    EXPECT_EQ(window.statusLine().definitionText(), QStringLiteral("Mine"));
    QTest::qWait(30);
    const QString fault = message(window, MessageArea::Subject::Definitions);
    EXPECT_TRUE(fault.contains(QStringLiteral("Mine"))) << qPrintable(fault);
    EXPECT_TRUE(fault.contains(QStringLiteral("keywords"))) << qPrintable(fault);
    choose(window, QStringLiteral("Format/Language/Text"));
    EXPECT_EQ(message(window, MessageArea::Subject::Definitions), QString());

    writeDefinition("Broken.plist", "no list at all <<<");
    DocumentWindow& other = open(write("b.php", "<?php return;\n"));
    EXPECT_EQ(other.statusLine().definitionText(), QStringLiteral("PHP"));
    QTest::qWait(30);
    EXPECT_TRUE(
        message(other, MessageArea::Subject::Definitions).contains(QStringLiteral("Broken.plist")));
}

} // namespace
} // namespace quillory::test
