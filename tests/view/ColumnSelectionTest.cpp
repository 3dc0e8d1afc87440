#include "EventLoopWatchdog.h"
#include "ViewHarness.h"

#include <QTest>
#include <cmath>

namespace quillory {

namespace {

class ColumnSelectionTest : public testing::Test
{
protected:
    void setText(const QString& text)
    {
        harness.storage.replaceCharactersInRange(harness.storage.snapshot().range(), text);
        harness.editor.setSelectedRange({});
        harness.settle();
    }

    /// Drags with Alt from one place to another, given as row and column.
    void drag(QPoint from, QPoint to)
    {
        QTest::mousePress(harness.view.viewport(), Qt::LeftButton, Qt::AltModifier, at(from));
        const QPoint end = at(to);
        QMouseEvent move(QEvent::MouseMove, end, harness.view.viewport()->mapToGlobal(end),
                         Qt::NoButton, Qt::LeftButton, Qt::AltModifier);
        QCoreApplication::sendEvent(harness.view.viewport(), &move);
        QTest::mouseRelease(harness.view.viewport(), Qt::LeftButton, Qt::AltModifier, end);
        harness.settle();
    }

    QPoint at(QPoint rowAndColumn)
    {
        TextViewport& viewport = harness.view.textViewport();
        return {
            int(viewport.left() + rowAndColumn.y() * harness.view.textGeometry().font().advance()),
            TextViewport::verticalMargin + (rowAndColumn.x() * 2 + 1) * viewport.rowHeight() / 2};
    }

    void expect(const char* marked) { EXPECT_EQ(harness.marked(), QString::fromUtf8(marked)); }

    ViewHarness harness;
};

TEST_F(ColumnSelectionTest, aDragWithAltSelectsARectangle)
{
    struct Case
    {
        const char* text;
        QPoint from; ///< row and column
        QPoint to;
        const char* marked;
    };
    const Case cases[] = {
        {"abcd\nefgh\nijkl", {0, 1}, {2, 3}, "a^bc|d\ne^fg|h\ni^jk|l"},
        {"abcd\nefgh\nijkl", {2, 3}, {0, 1}, "a|bc^d\ne|fg^h\ni|jk^l"},
        {"abcd\nefgh\nijkl", {2, 1}, {0, 3}, "a^bc|d\ne^fg|h\ni^jk|l"},
        // A short row has no part in it, one that reaches its left edge has.
        {"abcd\n\ne\nfg\nhijkl", {0, 2}, {4, 4}, "ab^cd|\n\ne\nfg|\nhi^jk|l"},
        // Without a width, each row gets a caret.
        {"abcd\n\ne\nfghi", {0, 3}, {3, 3}, "abc|d\n|\ne|\nfgh|i"},
        {"\tab\n    ab\nabcdef", {0, 4}, {2, 5}, "\t^a|b\n    ^a|b\nabcd^e|f"},
        {"ab\u00e9d\na\u0301bcd\nabcd", {0, 1}, {2, 3}, "a^b\u00e9|d\na\u0301^bc|d\na^bc|d"},
    };
    for (const Case& c : cases) {
        setText(QString::fromUtf8(c.text));
        drag(c.from, c.to);
        expect(c.marked);
    }
}

TEST_F(ColumnSelectionTest, altShiftAndArrowsExtendAndGoBack)
{
    setText(QStringLiteral("abcd\n\nefgh\nijkl"));
    harness.press({QStringLiteral("Right"), QStringLiteral("Alt+Shift+Down"),
                   QStringLiteral("Alt+Shift+Down")});
    expect("a|bcd\n|\ne|fgh\nijkl");
    harness.press({QStringLiteral("Alt+Shift+Right"), QStringLiteral("Alt+Shift+Right")});
    expect("a^bc|d\n\ne^fg|h\nijkl");
    harness.press({QStringLiteral("Alt+Shift+Up")}); // the row there is short, but x is kept
    harness.press({QStringLiteral("Alt+Shift+Down"), QStringLiteral("Alt+Shift+Left")});
    expect("a^b|cd\n\ne^f|gh\nijkl");
    harness.press({QStringLiteral("'x'")});
    expect("ax|cd\n\nex|gh\nijkl");
    harness.press({QStringLiteral("Ctrl+Z"), QStringLiteral("Escape")});
    expect("abcd\n\ne^f|gh\nijkl");
}

TEST_F(ColumnSelectionTest, caretsAreAddedAboveAndBelowAtTheirPlaceInTheRow)
{
    setText(QStringLiteral("abcd\n\nefgh\nijkl"));
    harness.editor.setSelectedRange({8, 0});
    harness.view.commands().addCaretAbove();
    harness.view.commands().addCaretAbove(); // past the short line
    harness.view.commands().addCaretBelow();
    expect("ab|cd\n|\nef|gh\nij|kl");
    harness.view.commands().addCaretBelow(); // there is no row
    harness.press({QStringLiteral("'-'")});
    expect("ab-|cd\n-|\nef-|gh\nij-|kl");
}

TEST_F(ColumnSelectionTest, rowsFromRightToLeftTakePartWhereTheyStand)
{
    const QString hebrew = QStringLiteral("\u05d0\u05d1\u05d2\u05d3");
    setText(QStringLiteral("abcd\n") + hebrew + QStringLiteral("\n\n") + hebrew);
    TextGeometry& geometry = harness.view.textGeometry();
    const auto row = geometry.rowAt(5);
    const auto columnOf = [&](TextOffset offset) {
        return int(std::round(geometry.xOf(row, offset) / geometry.font().advance()));
    };
    // The lines in between stand elsewhere, or are empty.
    drag({1, columnOf(6)}, {3, columnOf(8)});
    const QString marked = hebrew.left(1) + u'^' + hebrew.mid(1, 2) + u'|' + hebrew.mid(3);
    EXPECT_EQ(harness.marked(),
              QStringLiteral("abcd\n") + marked + QStringLiteral("\n\n") + marked);
    // By keys: to the right of the place is the character before it.
    harness.editor.setSelectedRange({7, 0});
    harness.press({QStringLiteral("Alt+Shift+Right")});
    EXPECT_EQ(harness.editor.primarySelection(), (Selection{7, 6}));
    harness.press({QStringLiteral("Alt+Shift+Left"), QStringLiteral("Alt+Shift+Left")});
    EXPECT_EQ(harness.editor.primarySelection(), (Selection{7, 8}));
}

TEST_F(ColumnSelectionTest, wrappedRowsAreRowsOfTheRectangle)
{
    setText(QStringLiteral("word ").repeated(200));
    harness.view.setWrapLines(true);
    harness.settle();
    drag({0, 1}, {2, 3});
    ASSERT_EQ(harness.editor.selections().size(), 3U);
    for (const Selection& selection : harness.editor.selections())
        EXPECT_EQ(selection.range().length, 2);
}

TEST_F(ColumnSelectionTest, aVeryTallRectangleDoesNotHoldUpTheMouse)
{
    for (const char* line : {"\u00e9\u00e8 wide \u65e5\u672c\n", "a plain line of text\n"}) {
        constexpr int count = 20'000;
        setText(QString::fromUtf8(line).repeated(count).chopped(1));
        EventLoopWatchdog watchdog;
        ColumnSelection& column = harness.view.columnSelection();
        column.start({0, 20});
        watchdog.watch("extending", [&] { column.extendTo({harness.storage.length(), 40}); });
        // Keys that are pressed while rows are left find all of them selected, and do not wait.
        watchdog.watch("pressing", [&] {
            harness.press({QStringLiteral("Left"), QStringLiteral("'-'")});
        });
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                return harness.editor.selections().size() == size_t(count) &&
                       harness.storage.length() ==
                           TextOffset(count * (QString::fromUtf8(line).size() + 1) - 1);
            },
            20000));
    }
}

} // namespace

} // namespace quillory
