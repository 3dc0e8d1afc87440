#include "app/SearchList.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace quillory::test {
namespace {

/// A window with a line to type in, and the list over it.
class SearchListTest : public ::testing::Test
{
protected:
    SearchListTest()
    {
        window.resize(800, 600);
        window.setCentralWidget(&text);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        text.setFocus();
    }

    static std::vector<SearchRow> rowsOf(const QStringList& texts)
    {
        std::vector<SearchRow> rows;
        for (const QString& text : texts)
            rows.push_back({text, {}, {}, !text.startsWith(u'-')});
        return rows;
    }

    void type(const char* keys) { QTest::keyClicks(&list.edit(), QLatin1StringView(keys)); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&list.edit(), key, modifiers);
    }

    QMainWindow window;
    QLineEdit& text = *new QLineEdit;
    SearchList& list = *new SearchList(&window);
    QSignalSpy chosen{&list, &SearchList::chosen};
};

TEST_F(SearchListTest, FindsTheBestRowsFirst)
{
    struct Case
    {
        const char* typed;
        std::vector<int> found;
    };
    const QStringList rows{u"void goToLine(int)"_qs, u"int line()"_qs,     u"Line::Line()"_qs,
                           u"bool isOutline"_qs,     u"Straße, größer"_qs, u"lane in eel"_qs};
    SearchFilter filter;
    filter.setRows(rows);
    for (const Case& c : std::vector<Case>{{"", {0, 1, 2, 3, 4, 5}},
                                           {"  ", {0, 1, 2, 3, 4, 5}},
                                           {"LINE", {2, 1, 0, 3}},
                                           {"line ()", {2, 1}},
                                           {"() line", {2, 1}},
                                           {"gtl", {0}},
                                           {"GRÖSS", {}},
                                           {"größ", {4}},
                                           {"xyz", {}}}) {
        SCOPED_TRACE(c.typed);
        EXPECT_EQ(filter.find(QString::fromUtf8(c.typed)), c.found);
    }
}

TEST_F(SearchListTest, NarrowsDownWhateverWayItWasTyped)
{
    QStringList rows;
    for (int i = 0; i < 3000; ++i)
        rows +=
            QStringLiteral("row %1 %2").arg(i * 7919 % 3001).arg(i % 13 == 0 ? u"odd" : u"even");
    SearchFilter filter;
    filter.setRows(rows);
    for (const char* typed :
         {"1", "12", "12 o", "12 od", "12 o", "2", "2 even", "", "odd 9", "r9d"}) {
        SearchFilter fresh;
        fresh.setRows(rows);
        EXPECT_EQ(filter.find(QLatin1StringView(typed)), fresh.find(QLatin1StringView(typed)))
            << typed;
    }
}

TEST_F(SearchListTest, KeysMoveChooseAndPutAway)
{
    QStringList texts;
    for (int i = 0; i < 100; ++i)
        texts += QStringLiteral("row %1").arg(i);
    list.setRows(rowsOf(texts));
    struct Case
    {
        const char* name;
        std::vector<std::pair<Qt::Key, Qt::KeyboardModifiers>> keys;
        int current;
    };
    for (const Case& c : std::vector<Case>{
             {"begins at the row it is told", {}, 3},
             {"down", {{Qt::Key_Down, {}}, {Qt::Key_Down, {}}}, 5},
             {"up", {{Qt::Key_Up, {}}}, 2},
             {"up, around the end",
              {{Qt::Key_Up, {}}, {Qt::Key_Up, {}}, {Qt::Key_Up, {}}, {Qt::Key_Up, {}}},
              99},
             {"to the end", {{Qt::Key_End, Qt::ControlModifier}}, 99},
             {"around", {{Qt::Key_End, Qt::ControlModifier}, {Qt::Key_Down, {}}}, 0},
             {"Home is for what is typed", {{Qt::Key_Home, {}}}, 3},
             {"page up stops", {{Qt::Key_PageUp, {}}}, 0},
         }) {
        SCOPED_TRACE(c.name);
        list.open(QStringLiteral("Rows"));
        list.setRows(rowsOf(texts), 3);
        for (const auto& [key, modifiers] : c.keys)
            press(key, modifiers);
        EXPECT_EQ(list.currentRow(), c.current);
        list.close();
    }

    list.open(QStringLiteral("Rows"));
    list.setRows(rowsOf(texts));
    press(Qt::Key_PageDown);
    EXPECT_GT(list.currentRow(), 8);
    type("row 4");
    EXPECT_EQ(list.currentRow(), 4);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_FALSE(list.isOpen());
    EXPECT_TRUE(text.hasFocus());
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].toInt(), 40);

    list.open(QStringLiteral("Rows"));
    EXPECT_TRUE(list.edit().text().isEmpty());
    press(Qt::Key_Escape);
    EXPECT_FALSE(list.isOpen());
    EXPECT_TRUE(text.hasFocus());
    list.open(QStringLiteral("Rows"));
    QTest::mouseClick(&text, Qt::LeftButton);
    EXPECT_FALSE(list.isOpen());
    list.open(QStringLiteral("Rows"));
    text.setFocus();
    EXPECT_FALSE(list.isOpen());
    EXPECT_TRUE(text.hasFocus());
    EXPECT_EQ(chosen.count(), 1);
}

TEST_F(SearchListTest, AClickChoosesButNotWhatIsDisabled)
{
    list.open(QStringLiteral("Rows"));
    list.setRows(rowsOf({u"a"_qs, u"-b"_qs, u"c"_qs}));
    auto* view = list.findChild<QListView*>();
    const auto click = [&](int place) {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          view->visualRect(view->model()->index(place, 0)).center());
    };
    click(1);
    EXPECT_TRUE(list.isOpen());
    click(2);
    EXPECT_FALSE(list.isOpen());
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].toInt(), 2);
}

TEST_F(SearchListTest, RowsMayComeWhileItIsOpen)
{
    list.open(QStringLiteral("Rows"));
    list.setBusy(QStringLiteral("Looking…"));
    type("b");
    press(Qt::Key_Return); // nothing to choose yet
    EXPECT_TRUE(list.isOpen());
    list.setRows(rowsOf({u"a"_qs, u"b"_qs, u"bb"_qs}));
    EXPECT_EQ(list.shownCount(), 2);
    EXPECT_EQ(list.currentRow(), 1);
    press(Qt::Key_Down);
    list.setRows(rowsOf({u"a"_qs, u"b"_qs, u"bb"_qs, u"bbb"_qs}));
    EXPECT_EQ(list.shownCount(), 3);
    EXPECT_EQ(list.currentRow(), 2);
}

TEST_F(SearchListTest, AHundredThousandRowsStayQuick)
{
    QStringList texts;
    for (int i = 0; i < 100'000; ++i)
        texts += QStringLiteral("static int function_number_%1(const char *name)").arg(i);
    list.open(QStringLiteral("Rows"));
    QElapsedTimer timer;
    timer.start();
    list.setRows(rowsOf(texts), 50'000);
    QApplication::processEvents();
    RecordProperty("set_ms", int(timer.elapsed()));
    qint64 slowest = 0;
    for (const char key : {'f', 'n', '9', '9', '9', '\b', '\b', '\b', '\b', '\b'}) {
        timer.start();
        if (key == '\b')
            press(Qt::Key_Backspace);
        else
            QTest::keyClick(&list.edit(), key);
        QApplication::processEvents();
        slowest = std::max(slowest, timer.elapsed());
    }
    RecordProperty("slowest_key_ms", int(slowest));
    EXPECT_EQ(list.shownCount(), 100'000);
    EXPECT_LT(slowest, 500); // a machine under load; it takes a tenth of it
}

} // namespace
} // namespace quillory::test
