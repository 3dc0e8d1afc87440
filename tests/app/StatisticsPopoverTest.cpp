#include "app/StatisticsPopover.h"

#include "../view/EventLoopWatchdog.h"
#include "AppFixture.h"

#include "app/DocumentWindow.h"
#include "app/TitleBarButtons.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QFileInfo>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace quillory::test {
namespace {

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

class StatisticsPopoverTest : public AppFixture
{
protected:
    static QLabel& field(DocumentWindow& window, const char* name)
    {
        return *window.titleBarButtons().information().findChild<QLabel*>(QLatin1StringView(name));
    }
    static QString shown(DocumentWindow& window, const char* name)
    {
        return field(window, name).text();
    }
    static QColor colour(DocumentWindow& window, const char* name)
    {
        return field(window, name).palette().color(QPalette::WindowText);
    }
    static StatisticsPopover& popover(DocumentWindow& window)
    {
        return window.titleBarButtons().information();
    }
    static void waitUntilCounted(DocumentWindow& window)
    {
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return !popover(window).statistics().isCounting(); }, 30'000));
    }

    const QLocale locale = QLocale(QLocale::German, QLocale::Germany);
    StatisticsPopoverTest() { QLocale::setDefault(locale); }
    ~StatisticsPopoverTest() override { QLocale::setDefault(QLocale::system()); }
};

TEST_F(StatisticsPopoverTest, TellsOfTheWholeTextInGreyAndOfASelectionInBlue)
{
    DocumentWindow& window = open(write("a.txt", QByteArray("a, b\r\n").repeated(1200)));
    window.setPalette(Qt::white);
    choose(window, qs("File/Information"));
    StatisticsPopover& information = popover(window);
    EXPECT_TRUE(information.isVisible());
    waitUntilCounted(window);
    EXPECT_EQ(shown(window, "lineEndingsInfoField"), qs("Windows (CRLF)"));
    EXPECT_EQ(shown(window, "charInfoField"), qs("7.200"));
    EXPECT_EQ(shown(window, "charExclInfoField"), qs("6.000"));
    EXPECT_EQ(shown(window, "wordInfoField"), qs("2400")) << "is not grouped";
    EXPECT_EQ(shown(window, "linesInfoField"), qs("1.201"));
    EXPECT_TRUE(field(window, "linesInfoField").isVisible());
    const QColor grey = QColor::fromRgbF(0.298F, 0.298F, 0.298F);
    for (const char* name :
         {"charInfoField", "charExclInfoField", "wordInfoField", "linesInfoField"})
        EXPECT_EQ(colour(window, name), grey) << name;
    const QFileInfo file(window.document().path());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shown(window, "sizeInfoInfoField").isEmpty(); }));
    EXPECT_TRUE(shown(window, "sizeInfoInfoField").contains(qs("7.200 bytes")));
    EXPECT_EQ(shown(window, "dateEditedField"),
              locale.toString(file.lastModified(), QLocale::ShortFormat));

    // What is selected meanwhile is counted after a moment.
    window.document().textView().setSelectedRange({0, 10});
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown(window, "charInfoField") == u"10"; }));
    EXPECT_EQ(shown(window, "charExclInfoField"), qs("8"));
    EXPECT_EQ(shown(window, "wordInfoField"), qs("4"));
    EXPECT_FALSE(field(window, "linesInfoField").isVisible());
    EXPECT_FALSE(field(window, "linesInfoTitleField").isVisible());
    for (const char* name : {"charInfoField", "charExclInfoField", "wordInfoField"})
        EXPECT_EQ(colour(window, name), QColor::fromRgbF(0.072F, 0.483F, 0.98F)) << name;

    QTest::keyClick(&information, Qt::Key_Escape);
    EXPECT_FALSE(information.isVisible());
}

TEST_F(StatisticsPopoverTest, OfANewDocumentKnowsNoFile)
{
    DocumentWindow& window = openNew();
    QTest::mouseClick(&window.titleBarButtons().infoButton(), Qt::LeftButton);
    EXPECT_TRUE(popover(window).isVisible());
    for (const char* name : {"dateCreatedField", "dateEditedField", "sizeInfoInfoField"})
        EXPECT_EQ(shown(window, name), QString()) << name;
    EXPECT_EQ(shown(window, "lineEndingsInfoField"), qs("Unix (LF)"));
    EXPECT_EQ(shown(window, "linesInfoField"), qs("1"));
    QTest::mouseClick(&window.titleBarButtons().infoButton(), Qt::LeftButton);
    EXPECT_FALSE(popover(window).isVisible()) << "its button puts it away";
    choose(window, qs("File/Information"));
    QTest::mouseClick(window.view().viewport(), Qt::LeftButton);
    EXPECT_FALSE(popover(window).isVisible()) << "a click elsewhere puts it away";
}

TEST_F(StatisticsPopoverTest, FiguresCanBeReadOnADarkDesktop)
{
    DocumentWindow& window = openNew();
    const QColor dark(35, 38, 41);
    window.setPalette(dark);
    choose(window, qs("File/Information"));
    EXPECT_GT(colour(window, "charInfoField").lightness(), 2 * dark.lightness());
}

TEST_F(StatisticsPopoverTest, OpensAtOnceInALargeTextAndFillsAsItCounts)
{
    DocumentWindow& window = openNew();
    const QString line = qs("größere Wörter und Zahlen 12 — ohne Ende, ").repeated(20) + u'\n';
    TextSnapshot text{QStringView(line)};
    while (text.length() < 40'000'000)
        text = text.replacing({text.length(), 0}, text);
    window.document().textStorage().replaceCharactersInRange({0, 0}, text);
    const qint64 copies = text.length() / line.size();

    EventLoopWatchdog watchdog;
    const auto open = [&] {
        watchdog.watch("opening", [&] { choose(window, qs("File/Information")); });
    };
    open();
    const DocumentStatistics& statistics = popover(window).statistics();
    EXPECT_TRUE(statistics.isCounting());
    EXPECT_EQ(shown(window, "charInfoField"), thousandFormatedStringFromNumber(text.length()));
    EXPECT_EQ(shown(window, "linesInfoField"), thousandFormatedStringFromNumber(copies + 1));
    QSignalSpy changes(const_cast<DocumentStatistics*>(&statistics), &DocumentStatistics::changed);
    popover(window).close();
    EXPECT_FALSE(statistics.isCounting()) << "nobody looks at it any more";
    open();
    waitUntilCounted(window);
    EXPECT_GT(changes.count(), 2) << "it says how far it is";
    EXPECT_EQ(shown(window, "wordInfoField"), QString::number(copies * 20 * 7));
    EXPECT_EQ(statistics.share(), 1);
}

} // namespace
} // namespace quillory::test
