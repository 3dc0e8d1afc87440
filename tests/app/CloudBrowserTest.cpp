#include "../view/EventLoopWatchdog.h"
#include "AppFixture.h"
#include "support/EnvironmentVariable.h"

#include "app/CloudBrowser.h"
#include "app/CloudModel.h"
#include "app/CloudMove.h"
#include "app/SaveFlow.h"
#include "app/Shell.h"
#include "document/Document.h"
#include "document/FileWatch.h"
#include "view/TextViewWidget.h"

#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 20'000; // milliseconds

class CloudBrowserTest : public AppFixture
{
protected:
    CloudBrowserTest() { defaults.setValue(keys::dontAsk, true); }

    void share(const char* name, const QByteArray& bytes, int age)
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(write(name, bytes));
        EXPECT_TRUE(file.open(QFile::ReadWrite));
        EXPECT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-age),
                                     QFileDevice::FileModificationTime));
    }

    void chooseFolder()
    {
        defaults.setValue(keys::dropboxPath, QUrl::fromLocalFile(path("shared")));
    }

    CloudBrowser& browse(DocumentWindow& window)
    {
        press(window, {u"Ctrl+Shift+O"_s});
        CloudBrowser* browser = Shell::of(window).cloudBrowser();
        if (!browser)
            qFatal("there is no browser");
        EXPECT_TRUE(QTest::qWaitForWindowActive(browser));
        waitForList(*browser);
        return *browser;
    }

    static void waitForList(const CloudBrowser& browser)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !browser.listing().isRunning(); }, patience));
    }

    static QStringList column(const CloudBrowser& browser, int column)
    {
        QStringList texts;
        const QAbstractItemModel& model = *browser.table().model();
        for (int row = 0; row < model.rowCount(); ++row)
            texts += model.index(row, column).data().toString();
        return texts;
    }
    static QStringList titles(const CloudBrowser& browser)
    {
        return column(browser, CloudModel::Title);
    }
    static QString selected(const CloudBrowser& browser)
    {
        const QModelIndexList rows = browser.table().selectionModel()->selectedRows();
        return rows.isEmpty() ? QString() : rows.front().data().toString();
    }
    /// A key for whatever has the keyboard in the browser.
    static void type(CloudBrowser& browser, Qt::Key key)
    {
        QTest::keyClick(browser.windowHandle(), key);
        QCoreApplication::processEvents();
    }
};

TEST_F(CloudBrowserTest, tellsThatNoFolderWasChosen)
{
    DocumentWindow& window = openNew();
    press(window, {u"Ctrl+Shift+O"_s});
    EXPECT_EQ(questions.told, QStringList(u"Error! No Dropbox path provided."_s));
    EXPECT_EQ(Shell::of(window).cloudBrowser(), nullptr);
}

TEST_F(CloudBrowserTest, listsSearchesAndOpensByKeys)
{
    share("shared/apple.txt", "red\nfruit", 30);
    share("shared/sub/banana.md", "yellow", 20);
    share("shared/cherry.c", "int red;", 10);
    chooseFolder();
    DocumentWindow& window = openNew();
    CloudBrowser& browser = browse(window);
    EXPECT_EQ(titles(browser), (QStringList{u"cherry"_s, u"banana"_s, u"apple"_s}));
    EXPECT_EQ(column(browser, CloudModel::Extension), (QStringList{u"c"_s, u"md"_s, u"txt"_s}));
    EXPECT_EQ(column(browser, CloudModel::Preview)[2], u"red fruit"_s);
    EXPECT_EQ(column(browser, CloudModel::Folder)[1], u"sub"_s);
    EXPECT_TRUE(browser.searchField().hasFocus());
    EXPECT_EQ(selected(browser), QString());
    type(browser, Qt::Key_Return);
    EXPECT_TRUE(browser.isVisible()) << "nothing is selected";

    type(browser, Qt::Key_Down);
    EXPECT_EQ(selected(browser), u"cherry"_s);
    type(browser, Qt::Key_Down);
    type(browser, Qt::Key_Down);
    type(browser, Qt::Key_Down);
    EXPECT_EQ(selected(browser), u"apple"_s) << "the last row";
    type(browser, Qt::Key_Up);
    EXPECT_EQ(selected(browser), u"banana"_s);
    EXPECT_TRUE(browser.searchField().hasFocus());

    const std::pair<const char*, QStringList> searches[]{
        {"red", {u"cherry"_s, u"apple"_s}},
        {"RED fruit", {u"apple"_s}},
        {"sub", {u"banana"_s}},
        {".md", {u"banana"_s}},
        {"nothing", {}},
    };
    for (const auto& [text, found] : searches) {
        browser.searchField().setText(QString::fromUtf8(text));
        EXPECT_EQ(titles(browser), found) << text;
        EXPECT_EQ(selected(browser), found.value(0)) << text;
    }
    EXPECT_EQ(browser.stateText(), u"No file matches “nothing”."_s);

    browser.searchField().setText(u"red fr"_s);
    QSignalSpy opened(&controller, &DocumentController::windowOpened);
    type(browser, Qt::Key_Return);
    EXPECT_FALSE(browser.isVisible());
    ASSERT_TRUE(opened.count() == 1 || opened.wait(patience));
    EXPECT_EQ(textOf(*controller.windows().back()), u"red\nfruit"_s);
    EXPECT_EQ(controller.windows().size(), 1U) << "the untouched document made room";
}

TEST_F(CloudBrowserTest, sortsByEveryColumn)
{
    share("shared/b.txt", "2", 30);
    share("shared/z/a.md", "3", 20);
    share("shared/C.c", "1", 10);
    chooseFolder();
    CloudBrowser& browser = browse(openNew());
    const std::pair<int, QStringList> orders[]{
        {CloudModel::Title, {u"a"_s, u"b"_s, u"C"_s}},
        {CloudModel::Extension, {u"C"_s, u"a"_s, u"b"_s}},
        {CloudModel::Preview, {u"C"_s, u"b"_s, u"a"_s}},
        {CloudModel::Date, {u"b"_s, u"a"_s, u"C"_s}},
    };
    for (const auto& [column, order] : orders) {
        QHeaderView& header = *browser.table().header();
        const QPoint place(header.sectionViewportPosition(column) + 5, header.height() / 2);
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
        if (titles(browser) != order)
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
        EXPECT_EQ(titles(browser), order) << column;
    }
    type(browser, Qt::Key_Escape);
    EXPECT_FALSE(browser.isVisible());
}

TEST_F(CloudBrowserTest, isMadeAnewAfterEverySaveWhileItIsShown)
{
    share("shared/a.txt", "before", 100);
    chooseFolder();
    DocumentWindow& window = open(path("shared/a.txt"));
    CloudBrowser& browser = browse(window);
    EXPECT_EQ(column(browser, CloudModel::Preview), QStringList(u"before"_s));
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    press(window, {u"'now '"_s});
    save(window);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return column(browser, CloudModel::Preview) == QStringList(u"now before"_s); },
        patience));
    press(window, {u"'and '"_s});
    window.saving().saveQuietly(false, [](const SaveResult&) {});
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return column(browser, CloudModel::Preview) == QStringList(u"now and before"_s); },
        patience));

    browser.close();
    const QSignalSpy started(&browser.listing(), &CloudListing::started);
    save(window);
    EXPECT_EQ(started.count(), 0);
}

TEST_F(CloudBrowserTest, saysWhatToDoWhereThereIsNothing)
{
    chooseFolder();
    DocumentWindow& window = openNew();
    CloudBrowser& browser = browse(window);
    EXPECT_TRUE(browser.stateText().startsWith(u"The folder “"_s + path("shared")));
    QDir().mkpath(path("shared"));
    browser.renew();
    waitForList(browser);
    EXPECT_TRUE(browser.stateText().startsWith(u"There are no text files in “"_s));
    share("shared/a.txt", "a", 0);
    browser.renew();
    waitForList(browser);
    EXPECT_EQ(browser.stateText(), u"1 file"_s);
}

TEST_F(CloudBrowserTest, tenThousandFilesKeepNobodyWaiting)
{
    for (int i = 0; i < 100; ++i) {
        const QString place = path("shared/") + QString::number(i);
        QDir().mkpath(place);
        for (int j = 0; j < 100; ++j) {
            QFile file(place + u"/file%1.txt"_s.arg(j));
            ASSERT_TRUE(file.open(QFile::WriteOnly));
            file.write(QByteArray("text ") + QByteArray::number(i * 100 + j));
        }
    }
    chooseFolder();
    DocumentWindow& window = openNew();
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    {
        EventLoopWatchdog watchdog;
        CloudBrowser& browser = browse(window);
        EXPECT_EQ(titles(browser).size(), 10'000);
        watchdog.watch("searching", [&] { browser.searchField().setText(u"text 99"_s); });
        EXPECT_EQ(titles(browser).size(), 280);
        watchdog.watch("all again", [&] { browser.searchField().clear(); });
        watchdog.watch("sorting", [&] { browser.table().sortByColumn(0, Qt::AscendingOrder); });
        browser.renew();
        EXPECT_EQ(titles(browser).size(), 10'000) << "what is shown stays meanwhile";
        waitForList(browser);
        EXPECT_EQ(titles(browser).size(), 10'000);
    }
    qInstallMessageHandler(before);
}

TEST_F(CloudBrowserTest, movesTheDocumentIntoTheContainerAndBack)
{
    DocumentWindow& window = open(write("moved-a.txt", "text"));
    moveToOrFromCloud(window, 1);
    EXPECT_EQ(window.document().path(), path("moved-a.txt")) << "there is no container";

    const EnvironmentVariable named("QUILLORY_CLOUD_CONTAINER",
                                    QFile::encodeName(path("container")));
    // Where the desktop's folders are not named, the home folder is the user's documents' too.
    const EnvironmentVariable home("HOME", QFile::encodeName(path("home")));
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", QFile::encodeName(path("home")));
    QDir().mkpath(path("container"));
    EXPECT_FALSE(isCloudItem(window));
    const auto comesTo = [&](const QString& place) {
        return QTest::qWaitFor([&] { return window.document().path() == place; }, 5000);
    };
    moveToOrFromCloud(window, 1);
    EXPECT_TRUE(comesTo(path("container/Documents/moved-a.txt")));
    EXPECT_TRUE(isCloudItem(window));
    EXPECT_FALSE(QFile::exists(path("moved-a.txt")));
    QTest::qWait(FileWatch::patience + 300);
    EXPECT_EQ(message(window, MessageArea::Subject::FileOnDisk), QString())
        << "nobody took the file away";
    press(window, {u"'a '"_s});
    save(window);
    EXPECT_EQ(bytesOf(path("container/Documents/moved-a.txt")), "a text");

    moveToOrFromCloud(window, 0);
    EXPECT_TRUE(comesTo(path("home/Documents/moved-a.txt")));
    EXPECT_FALSE(isCloudItem(window));
    EXPECT_EQ(bytesOf(path("home/Documents/moved-a.txt")), "a text");

    // What is in the way stays.
    write("moved-b.txt", "two");
    const QString inTheWay = write("container/Documents/moved-b.txt", "three");
    DocumentWindow& other = open(path("moved-b.txt"));
    moveToOrFromCloud(other, 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !questions.told.isEmpty(); }, 5000));
    EXPECT_EQ(other.document().path(), path("moved-b.txt"));
    EXPECT_EQ(bytesOf(inTheWay), "three");
}

TEST(SpokenDate, TellsHowLongAgo)
{
    const QDateTime now(QDate(2026, 11, 22), QTime(14, 30));
    const QLocale locale = QLocale::c();
    const std::pair<QDateTime, QString> cases[]{
        {now.addSecs(-5), u"Just now"_s},
        {now.addSecs(-60), u"1 min ago"_s},
        {now.addSecs(-59 * 60), u"59 min ago"_s},
        {now.addSecs(-3600), u"Today, 13:30:00"_s},
        {QDateTime(QDate(2026, 11, 21), QTime(9, 5)), u"Yesterday, 09:05:00"_s},
        {QDateTime(QDate(2026, 11, 20), QTime(9, 5)), u"20 Nov 2026 09:05:00"_s},
        {now.addSecs(7200), u"22 Nov 2026 16:30:00"_s},
    };
    for (const auto& [date, spoken] : cases)
        EXPECT_EQ(spokenDate(date, now, locale).toStdString(), spoken.toStdString());
}

} // namespace
} // namespace quillory::test
