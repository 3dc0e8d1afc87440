#include "ViewHarness.h"
#include "editing/RulerMeasures.h"
#include "foundation/KeyedArchive.h"
#include "view/MarkerLineNumberView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <set>

namespace quillory {

namespace {

QString lines(int count)
{
    QString text;
    for (int i = 1; i < count; ++i)
        text += QStringLiteral("line %1\n").arg(i);
    return text + QStringLiteral("last");
}

/// What of a widget is painted while this lives.
class Painted : public QObject
{
public:
    explicit Painted(QWidget& widget) { widget.installEventFilter(this); }
    QRegion take() { return std::exchange(m_region, {}); }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            m_region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

private:
    QRegion m_region;
};

class LineNumberViewTest : public testing::Test
{
protected:
    void set(const QString& text)
    {
        harness.storage.replaceCharactersInRange(harness.storage.snapshot().range(), text);
        harness.editor.setSelectedRange({});
        harness.view.ensureVisible(0);
        harness.settle();
    }

    QList<int> numbers() const
    {
        QList<int> result;
        for (const auto& label : ruler.labels())
            result.append(int(label.line.value()) + 1);
        return result;
    }

    /// Of the number of \a line, in the ruler.
    QPoint pointOf(int line) const
    {
        for (const auto& label : ruler.labels()) {
            if (label.line.value() + 1 == line)
                return label.row.center();
        }
        ADD_FAILURE() << line << " is not in sight";
        return {};
    }

    void press(int line, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mousePress(&ruler, Qt::LeftButton, modifiers, pointOf(line));
    }
    void moveTo(QPoint point)
    {
        QMouseEvent event(QEvent::MouseMove, point, ruler.mapToGlobal(point), Qt::NoButton,
                          Qt::LeftButton, {});
        QCoreApplication::sendEvent(&ruler, &event);
    }
    void release(QPoint point) { QTest::mouseRelease(&ruler, Qt::LeftButton, {}, point); }
    void click(int line, Qt::KeyboardModifiers modifiers = {})
    {
        press(line, modifiers);
        release(pointOf(line));
    }

    void expect(const char* marked) { EXPECT_EQ(harness.marked(), QString::fromLatin1(marked)); }

    ViewHarness harness;
    MarkerLineNumberView& ruler = *new MarkerLineNumberView(harness.view);
};

TEST_F(LineNumberViewTest, everyLineHasItsNumberAtItsFirstRow)
{
    QString text;
    for (int i = 0; i < 300; ++i)
        text += QStringLiteral("some words ").repeated(i % 7 * 5) + u'\n';
    set(text);
    for (const int size : {4, 8, 11, 24, 60}) {
        for (const bool wraps : {false, true}) {
            QFont font = harness.view.textFont();
            font.setPointSize(size);
            harness.view.setTextFont(font);
            harness.view.setWrapLines(wraps);
            harness.view.centerOn(text.size() / 2);
            for (int step = 0; step < 6; ++step) {
                SCOPED_TRACE(testing::Message() << size << " points, " << wraps << ", " << step);
                harness.view.scrollBy(0, 7);
                harness.settle();
                const TextFont& textFont = harness.view.textGeometry().font();
                const TextSnapshot& snapshot = harness.storage.snapshot();
                LineIndex next;
                for (const auto& label : ruler.labels()) {
                    const QRect caret = harness.view.caretRectAt(snapshot.lineStart(label.line));
                    EXPECT_EQ(label.row.y(), caret.y());
                    EXPECT_EQ(label.row.height(), caret.height());
                    EXPECT_EQ(label.baseline, caret.y() + textFont.baseline());
                    EXPECT_GE(label.rect.top(), label.row.y() - 1);
                    EXPECT_LE(label.rect.bottom(), label.row.y() + label.row.height() + 1);
                    EXPECT_GE(label.rect.left(), labelMargin - 1.0);
                    EXPECT_NEAR(label.rect.right(), ruler.width() - labelMargin, 0.01);
                    EXPECT_TRUE(next == LineIndex() || label.line == next) << label.line.value();
                    next = label.line + 1;
                }
                const TextRange visible = harness.view.visibleRange();
                EXPECT_TRUE(next == LineIndex() || snapshot.lineStart(next) == visible.end());
            }
        }
    }
}

TEST_F(LineNumberViewTest, emptyLinesHaveNumbersToo)
{
    const struct
    {
        const char* text;
        QList<int> numbers;
    } cases[]{{"", {1}}, {"a", {1}}, {"a\n", {1, 2}}, {"\r\n\r\n", {1, 2, 3}}};
    for (const auto& [text, expected] : cases) {
        set(QString::fromLatin1(text));
        EXPECT_EQ(numbers(), expected) << text;
    }
}

TEST_F(LineNumberViewTest, theWidthIsThatOfTheWidestNumber)
{
    const QFontMetricsF metrics(ruler.textAttributes().font);
    for (const int count : {1, 9, 10, 99, 100, 1000, 100'000}) {
        set(lines(count));
        const QString widest(QString::number(count).size(), u'8');
        EXPECT_EQ(ruler.ruleThickness(),
                  std::max(22, int(std::ceil(metrics.horizontalAdvance(widest) + 10))))
            << count;
        EXPECT_EQ(ruler.geometry(), harness.view.rulerRect());
        EXPECT_EQ(ruler.geometry().right() + 1, harness.view.viewport()->geometry().left());
    }
    QFont large = harness.view.textFont();
    large.setPointSize(50);
    const int before = ruler.ruleThickness();
    harness.view.setTextFont(large);
    harness.settle();
    EXPECT_GT(ruler.ruleThickness(), 2 * before);
}

TEST_F(LineNumberViewTest, aWiderNumberMakesRoomOnceAndMovesNothing)
{
    harness.view.setWrapLines(true);
    const QString line = QStringLiteral("words that wrap ").repeated(9) + u'\n';
    set(line.repeated(998) + QStringLiteral("the 999th"));
    harness.press({QStringLiteral("Ctrl+End")});
    const int thickness = ruler.ruleThickness();
    const int y = harness.view.caretRect().y();
    int resizes = 0;
    class Resizes : public QObject
    {
    public:
        explicit Resizes(int& count) : m_count(count) {}
        bool eventFilter(QObject*, QEvent* event) override
        {
            m_count += event->type() == QEvent::Resize ? 1 : 0;
            return false;
        }

    private:
        int& m_count;
    } counter(resizes);
    harness.view.viewport()->installEventFilter(&counter);
    QTest::keyClick(&harness.view, Qt::Key_Return);
    EXPECT_EQ(ruler.ruleThickness(), thickness) << "not in the middle of an edit";
    harness.settle();
    EXPECT_GT(ruler.ruleThickness(), thickness);
    EXPECT_EQ(resizes, 1);
    EXPECT_EQ(harness.view.caretRect().y(), y);
    EXPECT_EQ(numbers().back(), 1000);
    harness.press({QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(ruler.ruleThickness(), thickness);
    EXPECT_EQ(resizes, 2);

    // The caret out of sight, the line at the top stays.
    harness.view.centerOn(harness.storage.length() / 2);
    harness.settle();
    const auto atTop = ruler.labels().front();
    harness.storage.replaceCharactersInRange({harness.storage.length(), 0}, QStringLiteral("\nx"));
    harness.settle();
    EXPECT_GT(ruler.ruleThickness(), thickness);
    EXPECT_EQ(ruler.labels().front().line, atTop.line);
}

TEST_F(LineNumberViewTest, onlyNumbersThatChangeArePaintedAnew)
{
    set(lines(100));
    harness.editor.setSelectedRange({20, 0});
    harness.settle();
    Painted painted(ruler);
    harness.press({QStringLiteral("'x'"), QStringLiteral("Left"), QStringLiteral("Backspace")});
    EXPECT_TRUE(painted.take().isEmpty());
    set(lines(50));
    harness.editor.setSelectedRange({harness.storage.length(), 0});
    harness.view.ensureVisible(0);
    harness.settle();
    painted.take();
    // The third line becomes two in sight, and nothing above it differs.
    const QRect third = ruler.labels()[2].row;
    harness.storage.replaceCharactersInRange({20, 0}, QStringLiteral("\n"));
    harness.settle();
    EXPECT_GT(painted.take().boundingRect().top(), third.top() - 3 * third.height());
}

TEST_F(LineNumberViewTest, aHiddenRulerTakesNoRoom)
{
    set(lines(1000));
    ruler.hide();
    EXPECT_EQ(harness.view.viewport()->x(), 0);
    set(lines(100'000));
    EXPECT_EQ(harness.view.viewport()->x(), 0);
    ruler.show();
    harness.settle();
    EXPECT_EQ(harness.view.viewport()->x(), ruler.requiredThickness());
    EXPECT_EQ(ruler.width(), ruler.requiredThickness());
}

TEST_F(LineNumberViewTest, aChangeOfClientChangesTheLines)
{
    set(lines(12));
    TextStorage storage;
    UndoManager undo(storage);
    QPTextView editor(storage, undo);
    Overlay overlay;
    TextViewWidget other(editor, overlay);
    storage.replaceCharactersInRange({}, QStringLiteral("a\nb\n"));
    ruler.setClientView(&other);
    EXPECT_EQ(ruler.parentWidget(), &other);
    EXPECT_EQ(ruler.lineIndices().count(), 3);
    EXPECT_EQ(harness.view.rulerRect().width(), 0);
    storage.replaceCharactersInRange({}, QStringLiteral("\n"));
    EXPECT_EQ(ruler.lineIndices().count(), 4);
    EXPECT_EQ(ruler.lineNumberForCharacterIndex(1).value(), 1);
    harness.storage.replaceCharactersInRange({}, QStringLiteral("\n")); // no longer heard
    EXPECT_EQ(ruler.lineIndices().count(), 4);
    ruler.setClientView(nullptr);
    EXPECT_EQ(ruler.lineIndices().count(), 1);
    EXPECT_TRUE(ruler.labels().empty());
    ruler.setClientView(&harness.view);
    harness.settle();
    EXPECT_TRUE(ruler.isVisible());
    EXPECT_EQ(ruler.lineIndices().count(), 13);
}

// Selecting

TEST_F(LineNumberViewTest, aPressSelectsALineAndADragLines)
{
    set(QStringLiteral("ab\ncd\nef\ngh\n"));
    click(2);
    expect("ab\n^cd\n|ef\ngh\n");
    press(2);
    moveTo(pointOf(3));
    expect("ab\n^cd\nef\n|gh\n");
    moveTo(pointOf(1));
    expect("|ab\ncd\n^ef\ngh\n");
    release(pointOf(1));
    moveTo(pointOf(4)); // over
    expect("|ab\ncd\n^ef\ngh\n");
    click(5);
    expect("ab\ncd\nef\ngh\n|");
    QTest::mouseDClick(&ruler, Qt::LeftButton, {}, pointOf(1));
    expect("^ab\n|cd\nef\ngh\n");
    EXPECT_TRUE(harness.view.hasFocus());
    QTest::mouseClick(&ruler, Qt::RightButton, {}, pointOf(3));
    expect("^ab\n|cd\nef\ngh\n");
}

TEST_F(LineNumberViewTest, shiftExtendsByLinesAndCtrlAddsOne)
{
    set(QStringLiteral("ab\ncd\nef\ngh\n"));
    click(2);
    click(3, Qt::ShiftModifier);
    expect("ab\n^cd\nef\n|gh\n");
    click(1, Qt::ShiftModifier);
    expect("|ab\ncd\n^ef\ngh\n");
    click(4, Qt::ShiftModifier);
    expect("ab\n^cd\nef\ngh\n|");
    harness.editor.setSelectedRange({4, 0});
    click(1, Qt::ShiftModifier);
    expect("|ab\ncd\n^ef\ngh\n");
    click(4, Qt::ControlModifier);
    expect("|ab\ncd\n^ef\n^gh\n|");
}

TEST_F(LineNumberViewTest, aDragBelowTheEdgeScrolls)
{
    set(lines(500));
    click(1);
    press(3);
    moveTo({4, ruler.height() + 60});
    ASSERT_TRUE(QTest::qWaitFor([&] { return numbers().front() > 10; }, 5000));
    release({4, ruler.height() + 60});
    const TextRange range = harness.editor.selectedRange();
    const TextSnapshot& text = harness.storage.snapshot();
    EXPECT_EQ(range.location, text.lineStart(LineIndex(2)));
    EXPECT_EQ(range.end(), text.lineStart(text.lineAt(range.end())));
    EXPECT_GT(text.lineAt(range.end()).value(), 20);
    EXPECT_EQ(harness.view.horizontalScrollBar()->value(), 0);
}

TEST_F(LineNumberViewTest, theWheelScrollsTheText)
{
    set(lines(500));
    QWheelEvent event({5, 50}, ruler.mapToGlobal(QPointF(5, 50)), {0, -120}, {0, -120}, {}, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&ruler, &event);
    harness.settle();
    EXPECT_GT(numbers().front(), 3);
    EXPECT_EQ(ruler.cursor().shape(), Qt::ArrowCursor);
}

// Looks

TEST_F(LineNumberViewTest, markersKeepTheirLinesAndTurnTheirLabels)
{
    set(lines(20));
    ruler.setMarkers({{LineIndex(3)}, {LineIndex(5)}});
    ruler.addMarker({LineIndex(7)});
    ruler.removeMarker({LineIndex(5)});
    EXPECT_EQ(ruler.linesToMarkers().size(), 2U);
    EXPECT_EQ(ruler.markerAtLine(LineIndex(5)), nullptr);
    ASSERT_NE(ruler.markerAtLine(LineIndex(3)), nullptr);
    EXPECT_EQ(ruler.markerAtLine(LineIndex(3))->lineNumber, LineIndex(3));
    LineNumberLook look;
    look.backgroundColor = Qt::black;
    look.textColor = Qt::green;
    look.alternateTextColor = Qt::red;
    ruler.setLook(look);
    harness.settle();
    EXPECT_EQ(ruler.textAttributes().color, Qt::green);
    EXPECT_EQ(ruler.markerTextAttributes().color, Qt::red);
    const QImage image = ruler.grab().toImage();
    const auto strongest = [&](const LineNumberView::Label& label) {
        std::pair<int, int> most; // of green and red alone
        const double scale = image.devicePixelRatio();
        const QRect box = label.rect.toAlignedRect();
        const QRect area = QRect(box.topLeft() * scale, box.size() * scale) & image.rect();
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                most.first = std::max(most.first, pixel.green() - pixel.red() - pixel.blue());
                most.second = std::max(most.second, pixel.red() - pixel.green() - pixel.blue());
            }
        }
        return most;
    };
    for (const auto& label : ruler.labels()) {
        const auto [green, red] = strongest(label);
        const bool marked = ruler.markerAtLine(label.line);
        EXPECT_EQ(green > 60, !marked) << label.line.value();
        EXPECT_EQ(red > 60, marked) << label.line.value();
    }
    for (const int count : {20, 20'000}) {
        set(lines(count));
        const QSizeF size = ruler.markerImage().deviceIndependentSize();
        EXPECT_NEAR(size.width(), ruler.ruleThickness(), 1);
        EXPECT_NEAR(size.height(), 13, 1);
    }
}

TEST_F(LineNumberViewTest, showsBackgroundSeparatorAndGrain)
{
    LineNumberLook look;
    look.backgroundColor = QColor(200, 100, 50);
    ruler.setLook(look);
    EXPECT_TRUE(ruler.darkBackgroundColor().isValid());
    EXPECT_LT(ruler.darkBackgroundColor().lightnessF(), look.backgroundColor->lightnessF());
    harness.settle();
    const QImage image = ruler.grab().toImage();
    const auto distance = [](const QColor& a, const QColor& b) {
        return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                         std::abs(a.blue() - b.blue())});
    };
    const double scale = image.devicePixelRatio();
    const int separator = int((ruler.width() - 0.5) * scale);
    std::set<QRgb> shades;
    for (int y = image.height() / 2; y < image.height(); ++y) {
        EXPECT_LE(distance(image.pixelColor(separator, y), QColor(148, 148, 148)), 12);
        for (int x = 0; x < separator - 2; ++x) {
            EXPECT_LE(distance(image.pixelColor(x, y), *look.backgroundColor), 12);
            shades.insert(image.pixel(x, y));
        }
    }
    EXPECT_GT(shades.size(), 4U);
}

TEST(LineNumberLook, canBeReadOnEveryBackground)
{
    const auto readable = [](const QColor& text, const QColor& background) {
        TextViewColours colours;
        colours.text = text;
        colours.background = background;
        return LineNumberLook::beside(colours).textColor;
    };
    const QColor standard = LineNumberLook().textColor;
    EXPECT_EQ(standard.name(), QColor::fromRgbF(0.42F, 0.42F, 0.42F).name());
    EXPECT_EQ(readable(Qt::black, Qt::white), standard);
    EXPECT_EQ(readable(Qt::white, Qt::black), standard);
    // Too near to it on either side.
    for (const int grey : {50, 107, 130}) {
        const QColor chosen = readable(Qt::white, QColor(grey, grey, grey));
        EXPECT_GT(chosen.lightness(), 160) << grey;
    }
    EXPECT_LT(readable(Qt::black, QColor(130, 130, 130)).lightness(), 60);
}

TEST(LineNumberLook, isArchivedByKeyAndInOrder)
{
    LineNumberLook look;
    look.font = QFont(QStringLiteral("DejaVu Sans"), 7);
    look.textColor = QColor(1, 2, 3, 4);
    look.alternateTextColor = Qt::blue;
    for (const auto& background : {std::optional<QColor>(), std::optional<QColor>(Qt::yellow)}) {
        look.backgroundColor = background;
        const auto archive = encodeKeyedArchive(look.encode());
        ASSERT_TRUE(archive);
        const auto decoded = decodeKeyedArchive(*archive);
        ASSERT_TRUE(decoded);
        EXPECT_EQ(LineNumberLook::decode(*decoded), look);
        PropertyList::Array inOrder;
        for (const char* key : {"font", "textColor", "alternateTextColor", "backgroundColor"})
            inOrder.append(look.encode().value(QString::fromLatin1(key)));
        EXPECT_EQ(LineNumberLook::decode(inOrder), look);
    }
    EXPECT_EQ(LineNumberLook::decode(PropertyList()), LineNumberLook());
    EXPECT_EQ(LineNumberLook::decode(PropertyList::Array{false, QStringLiteral("nonsense")}),
              LineNumberLook());

    const LineNumberMarker marker{LineIndex(41)};
    EXPECT_EQ(LineNumberMarker::decode(marker.encode()).lineNumber, LineIndex(41));
    EXPECT_EQ(LineNumberMarker::decode(PropertyList::Array{41}).lineNumber, LineIndex(41));
    EXPECT_EQ(LineNumberMarker::decode(PropertyList()).lineNumber, LineIndex(0));
    EXPECT_EQ(LineNumberMarker::decode(PropertyList::Array{-2}).lineNumber, LineIndex(0));
}

} // namespace

} // namespace quillory
