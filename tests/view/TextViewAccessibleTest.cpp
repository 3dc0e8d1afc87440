#include "ViewHarness.h"
#include "editing/MarkedRanges.h"

#include "view/TextViewAccessible.h"

#include "view/TextViewAnnouncer.h"
#include <QAccessible>
#include <QScrollBar>

namespace quillory {

namespace {

/// The events of a text view, as words: "insert 3 'abc'". Qt itself passes none on where the
/// platform has no assistive technologies.
class HeardEvents : public TextViewAnnouncer
{
public:
    explicit HeardEvents(ViewHarness& harness) : TextViewAnnouncer(harness.view)
    {
        QAccessible::setActive(true);
        QObject::connect(&harness.storage, &TextStorage::edited, &m_context,
                         [this](const TextChange& change) { followEdit(change); });
        QObject::connect(&harness.storage, &TextStorage::editingEnded, &m_context,
                         [this] { editingEnded(); });
        QObject::connect(&harness.editor, &QPTextView::selectionDidChange, &m_context,
                         [this] { selectionChanged(); });
    }
    ~HeardEvents() override { QAccessible::setActive(false); }
    Q_DISABLE_COPY_MOVE(HeardEvents)

    QString take() { return std::exchange(m_heard, {}).join(QStringLiteral("; ")); }

protected:
    void send(QAccessibleEvent& event) override { m_heard += words(event); }

private:
    static QString shown(const QString& text)
    {
        return text.size() > 40 ? QStringLiteral("%1 units").arg(text.size())
                                : u'\'' + QString(text).replace(u'\n', u'/') + u'\'';
    }

    static QString words(QAccessibleEvent& event)
    {
        switch (event.type()) {
        case QAccessible::TextInserted: {
            const auto& inserted = static_cast<QAccessibleTextInsertEvent&>(event);
            return QStringLiteral("insert %1 ").arg(inserted.changePosition()) +
                   shown(inserted.textInserted());
        }
        case QAccessible::TextRemoved: {
            const auto& removed = static_cast<QAccessibleTextRemoveEvent&>(event);
            return QStringLiteral("remove %1 ").arg(removed.changePosition()) +
                   shown(removed.textRemoved());
        }
        case QAccessible::TextUpdated: {
            const auto& update = static_cast<QAccessibleTextUpdateEvent&>(event);
            return QStringLiteral("update %1 ").arg(update.changePosition()) +
                   shown(update.textRemoved()) + QStringLiteral(" to ") +
                   shown(update.textInserted());
        }
        case QAccessible::TextCaretMoved:
            return QStringLiteral("caret %1")
                .arg(static_cast<QAccessibleTextCursorEvent&>(event).cursorPosition());
        case QAccessible::TextSelectionChanged: {
            const auto& selection = static_cast<QAccessibleTextSelectionEvent&>(event);
            return QStringLiteral("select %1-%2")
                .arg(selection.selectionStart())
                .arg(selection.selectionEnd());
        }
        case QAccessible::ValueChanged:
            return QStringLiteral("value %1")
                .arg(static_cast<QAccessibleValueChangeEvent&>(event).value().toInt());
        default:
            return QStringLiteral("another event");
        }
    }

    QObject m_context;
    QStringList m_heard;
};

class TextViewAccessibleTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { installTextViewAccessibility(); }

    QAccessibleInterface& interface()
    {
        return *QAccessible::queryAccessibleInterface(&harness.view);
    }
    QAccessibleTextInterface& text() { return *interface().textInterface(); }
    void set(const QString& string)
    {
        harness.storage.replaceCharactersInRange(harness.storage.snapshot().range(), string);
        harness.editor.setSelectedRange({});
        harness.undo.removeAllActions();
        harness.settle();
    }
    /// "[start-end] text" of the unit at, before or after an offset.
    using Look = QString (QAccessibleTextInterface::*)(int, QAccessible::TextBoundaryType, int*,
                                                       int*) const;
    QString unit(Look look, int offset, QAccessible::TextBoundaryType kind)
    {
        int start = 0;
        int end = 0;
        const QString found = (text().*look)(offset, kind, &start, &end);
        EXPECT_LE(found.size(), end - start);
        return QStringLiteral("[%1-%2] ").arg(start).arg(end) + QString(found).replace(u'\n', u'/');
    }
    QString at(int offset, QAccessible::TextBoundaryType kind)
    {
        return unit(&QAccessibleTextInterface::textAtOffset, offset, kind);
    }

    ViewHarness harness;
};

TEST_F(TextViewAccessibleTest, isAnEditableTextWithAllItsInterfaces)
{
    EXPECT_EQ(interface().role(), QAccessible::EditableText);
    ASSERT_TRUE(interface().textInterface());
    ASSERT_TRUE(interface().editableTextInterface());
    ASSERT_TRUE(interface().valueInterface());
    EXPECT_TRUE(interface().state().multiLine);
    EXPECT_TRUE(interface().state().focusable);
    EXPECT_TRUE(interface().state().editable);
    EXPECT_FALSE(interface().state().readOnly);
    harness.editor.setEditable(false);
    EXPECT_FALSE(interface().state().editable);
    EXPECT_TRUE(interface().state().readOnly);
}

TEST_F(TextViewAccessibleTest, scrollBarsAreItsOnlyChildren)
{
    set(repeated(QStringLiteral("line\n"), 5000));
    ASSERT_EQ(interface().childCount(), 1);
    QAccessibleInterface* child = interface().child(0);
    EXPECT_EQ(interface().indexOfChild(child), 0);
    EXPECT_TRUE(
        static_cast<QWidget*>(child->object())->isAncestorOf(harness.view.verticalScrollBar()));
    const QPoint middle = interface().rect().center();
    EXPECT_EQ(interface().childAt(middle.x(), middle.y()), nullptr);
    EXPECT_EQ(interface().child(1), nullptr);
}

TEST_F(TextViewAccessibleTest, unitsAreFoundAroundBeforeAndAfterAnOffset)
{
    // A family of three is one character of eight units: offsets 13 to 20.
    set(QStringLiteral("one two. Six\n\U0001F468\u200D\U0001F469\u200D\U0001F467 x\r\n\nend"));
    struct Case
    {
        QAccessible::TextBoundaryType kind;
        int offset;
        const char* before;
        const char* at;
        const char* after;
    };
    const Case cases[] = {
        {QAccessible::CharBoundary, 1, "[0-1] o", "[1-2] n", "[2-3] e"},
        {QAccessible::CharBoundary, 0, "[-1--1] ", "[0-1] o", "[1-2] n"},
        {QAccessible::CharBoundary, 28, "[27-28] n", "[28-29] d", "[-1--1] "},
        {QAccessible::WordBoundary, 5, "[3-4]  ", "[4-7] two", "[7-8] ."},
        {QAccessible::WordBoundary, 29, "[25-26] /", "[26-29] end", "[-1--1] "},
        {QAccessible::SentenceBoundary, 3, "[-1--1] ", "[0-9] one two. ", "[9-13] Six/"},
        {QAccessible::LineBoundary, 12, "[-1--1] ", "[0-13] one two. Six/", nullptr},
        {QAccessible::LineBoundary, 25, nullptr, "[25-26] /", "[26-29] end"},
        {QAccessible::ParagraphBoundary, 26, "[25-26] /", "[26-29] end", "[-1--1] "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.offset);
        EXPECT_EQ(at(c.offset, c.kind), QString::fromUtf8(c.at));
        if (c.before) {
            EXPECT_EQ(unit(&QAccessibleTextInterface::textBeforeOffset, c.offset, c.kind),
                      QString::fromUtf8(c.before));
        }
        if (c.after) {
            EXPECT_EQ(unit(&QAccessibleTextInterface::textAfterOffset, c.offset, c.kind),
                      QString::fromUtf8(c.after));
        }
    }
    EXPECT_TRUE(at(15, QAccessible::CharBoundary).startsWith(QStringLiteral("[13-21] ")));
    EXPECT_TRUE(at(24, QAccessible::CharBoundary).startsWith(QStringLiteral("[23-25] ")));
}

TEST_F(TextViewAccessibleTest, unitsOfOneKindMakeUpTheWholeText)
{
    const QString samples[] = {
        QStringLiteral("One. Two three!\n\n\tx\u0301y \u05d0\u05d1\u05d2 \U0001F600\r\nend. \n"),
        QStringLiteral("a\u0301\U0001F600 ").repeated(5000) + u'\n',
        QStringLiteral("x").repeated(20'000) + QStringLiteral(" ! ") + QString(9000, u' '),
    };
    for (const QString& sample : samples) {
        set(sample);
        for (const bool wrap : {false, true}) {
            harness.view.setWrapLines(wrap);
            for (const auto kind : {QAccessible::WordBoundary, QAccessible::SentenceBoundary,
                                    QAccessible::LineBoundary, QAccessible::ParagraphBoundary,
                                    QAccessible::CharBoundary}) {
                SCOPED_TRACE(QStringLiteral("%1 %2").arg(int(kind)).arg(wrap).toStdString());
                int start = 0;
                int end = 0;
                QString read = text().textAtOffset(0, kind, &start, &end);
                for (int last = start; end < sample.size();) {
                    ASSERT_GE(start, last);
                    last = end;
                    read += text().textAfterOffset(start, kind, &start, &end);
                    ASSERT_EQ(start, last);
                    ASSERT_LE(end - start, 5000);
                }
                EXPECT_EQ(read, sample);
            }
        }
    }
}

TEST_F(TextViewAccessibleTest, aWrappedLineIsReadRowByRow)
{
    set(repeated(QStringLiteral("some words of a line "), 400) + QStringLiteral("\nnext"));
    harness.view.setWrapLines(true);
    harness.settle();
    int start = 0;
    int end = 0;
    text().textAtOffset(0, QAccessible::LineBoundary, &start, &end);
    EXPECT_EQ(start, 0);
    EXPECT_GT(end, 40);
    EXPECT_LT(end, 200);
    EXPECT_EQ(text().characterRect(end).y(),
              text().characterRect(0).y() + text().characterRect(0).height());
}

TEST_F(TextViewAccessibleTest, largeTextsAreGivenInPieces)
{
    set(repeated(QStringLiteral("abcdefgh "), 5'000'000)); // one line
    const WorkDone work(harness);
    EXPECT_EQ(text().characterCount(), 5'000'000);
    EXPECT_EQ(text().text(0, 5'000'000).size(), longestSpokenText);
    EXPECT_EQ(at(4'000'000, QAccessible::WordBoundary),
              QStringLiteral("[3999996-4000004] efghabcd")
                  .replace(QStringLiteral("efghabcd"), text().text(3999996, 4000004)));
    int start = 0;
    int end = 0;
    text().textAtOffset(4'000'000, QAccessible::LineBoundary, &start, &end);
    EXPECT_TRUE(start <= 4'000'000 && end > 4'000'000 && end - start < 10'000);
    HeardEvents heard(harness);
    harness.editor.insertText(repeated(QStringLiteral("xyz "), 2'000'000));
    EXPECT_EQ(heard.take(), QStringLiteral("insert 0 16384 units; caret 2000000"));
}

TEST_F(TextViewAccessibleTest, charactersAreFoundWhereTheyShow)
{
    set(QStringLiteral("abc\U0001F600 x\tW\n") + repeated(QStringLiteral("line\n"), 5000));
    harness.view.setRulerWidth(30);
    harness.settle();
    for (int pass = 0; pass < 2; ++pass) {
        const int base = pass == 0 ? 0 : 1011; // the beginning of a line
        text().scrollToSubstring(base, base + 3);
        harness.settle();
        for (int i = 0; i < (pass == 0 ? 8 : 4); ++i) {
            if (pass == 0 && i == 4)
                continue; // the other half of a character
            const QRect rect = text().characterRect(base + i);
            ASSERT_FALSE(rect.isEmpty()) << i;
            EXPECT_EQ(text().offsetAtPoint(rect.center()), base + i);
        }
    }
    EXPECT_TRUE(text().characterRect(0).isNull()); // scrolled away
    set(repeated(QStringLiteral("abcdefgh "), 100'000));
    text().scrollToSubstring(50'000, 50'010);
    EXPECT_TRUE(text().characterRect(0).isNull());
    EXPECT_FALSE(text().characterRect(50'000).isNull());
    const QRect view = interface().rect();
    EXPECT_EQ(text().offsetAtPoint(view.topLeft() - QPoint(5, 5)), -1);
    EXPECT_EQ(text().offsetAtPoint(view.topLeft() + QPoint(5, 5)), -1); // on the ruler
}

TEST_F(TextViewAccessibleTest, selectionsAreListedAndSet)
{
    set(QStringLiteral("one two three"));
    EXPECT_EQ(text().selectionCount(), 0);
    text().addSelection(0, 3);
    text().addSelection(8, 13);
    EXPECT_EQ(harness.marked(), QStringLiteral("^one| two ^three|"));
    int start = 0;
    int end = 0;
    text().selection(1, &start, &end);
    EXPECT_EQ(std::pair(start, end), std::pair(8, 13));
    text().setSelection(0, 7, 4);
    EXPECT_EQ(harness.marked(), QStringLiteral("one |two^ ^three|"));
    EXPECT_EQ(text().cursorPosition(), 4);
    text().removeSelection(1);
    EXPECT_EQ(harness.marked(), QStringLiteral("one |two^ three"));
    text().removeSelection(0);
    EXPECT_EQ(harness.marked(), QStringLiteral("one |two three"));
    for (const int index : {-1, 1, 7}) {
        text().removeSelection(index);
        text().setSelection(index, 0, 2);
    }
    EXPECT_EQ(harness.marked(), QStringLiteral("one |two three"));
    text().setCursorPosition(99);
    EXPECT_EQ(harness.marked(), QStringLiteral("one two three|"));
}

TEST_F(TextViewAccessibleTest, editsAreUndoableAndNeedPermission)
{
    set(QStringLiteral("one two three"));
    QAccessibleEditableTextInterface& editable = *interface().editableTextInterface();
    editable.insertText(3, QStringLiteral("!"));
    editable.deleteText(0, 1);
    editable.replaceText(4, 7, QStringLiteral("2"));
    EXPECT_EQ(harness.text(), QStringLiteral("ne! 2 three"));
    harness.editor.setEditable(false);
    editable.insertText(0, QStringLiteral("no"));
    editable.deleteText(0, 5);
    EXPECT_EQ(harness.text(), QStringLiteral("ne! 2 three"));
    harness.editor.setEditable(true);
    for (int i = 0; i < 3; ++i)
        harness.view.commands().undo();
    EXPECT_EQ(harness.text(), QStringLiteral("one two three"));
}

TEST_F(TextViewAccessibleTest, theValueIsTheLineOfTheCaret)
{
    set(QStringLiteral("a\nb\nc"));
    QAccessibleValueInterface& value = *interface().valueInterface();
    EXPECT_EQ(value.currentValue().toInt(), 1);
    EXPECT_EQ(value.maximumValue().toInt(), 3);
    value.setCurrentValue(2);
    EXPECT_EQ(harness.marked(), QStringLiteral("a\n|b\nc"));
    value.setCurrentValue(99);
    EXPECT_EQ(harness.marked(), QStringLiteral("a\nb\n|c"));
}

TEST_F(TextViewAccessibleTest, attributesAreThoseOfTheStretch)
{
    set(QStringLiteral("plain red plain"));
    const Colour red{1, 0, 0, 1};
    harness.overlay.setAttributes({6, 3}, {red, {}});
    int start = 0;
    int end = 0;
    const QString coloured = text().attributes(7, &start, &end);
    EXPECT_EQ(std::pair(start, end), std::pair(6, 9));
    EXPECT_TRUE(coloured.contains(QStringLiteral(";color:rgb(255,0,0);")));
    const QString plain = text().attributes(10, &start, &end);
    EXPECT_EQ(std::pair(start, end), std::pair(9, 15));
    EXPECT_FALSE(plain.contains(QStringLiteral("rgb(255,0,0)")));
    EXPECT_TRUE(plain.contains(QStringLiteral("font-family:\"")));
    text().attributes(0, &start, &end);
    EXPECT_EQ(std::pair(start, end), std::pair(0, 6));

    MarkedRanges misspelt;
    misspelt.replace({0, 15}, std::vector<TextRange>{{0, 2}, {3, 2}, {7, 4}});
    harness.view.setMisspelt(&misspelt);
    const QString invalid = QStringLiteral(";invalid:spelling;");
    EXPECT_TRUE(text().attributes(3, &start, &end).contains(invalid));
    EXPECT_EQ(std::pair(start, end), std::pair(3, 5));
    EXPECT_FALSE(text().attributes(2, &start, &end).contains(invalid));
    EXPECT_EQ(std::pair(start, end), std::pair(2, 3));
    EXPECT_TRUE(text().attributes(8, &start, &end).contains(invalid));
    EXPECT_EQ(std::pair(start, end), std::pair(7, 9)) << "which is red";
}

TEST_F(TextViewAccessibleTest, whatHappensIsTold)
{
    set(QStringLiteral("one\ntwo"));
    HeardEvents heard(harness);
    const struct
    {
        const char* key;
        const char* events;
    } cases[] = {
        {"'x'", "insert 0 'x'; caret 1"},
        {"Backspace", "remove 0 'x'; caret 0"},
        {"Down", "caret 4"},
        {"Shift+Right", "caret 5; select 4-5"},
        {"'y'", "update 4 't' to 'y'; select 5-5"},
        {"Ctrl+Z", "update 4 'y' to 't'; select 4-5"},
        {"Left", "caret 4; select 4-4"},
    };
    for (const auto& c : cases) {
        harness.press({QString::fromUtf8(c.key)});
        EXPECT_EQ(heard.take().toStdString(), c.events) << c.key;
    }
    harness.editor.setSelections({Selection::caret(0), Selection::caret(4)}, 1);
    heard.take();
    harness.press({QStringLiteral("'z'")});
    EXPECT_EQ(heard.take().toStdString(), "insert 0 'z'; insert 5 'z'; caret 6; select 6-6");
    harness.press({QStringLiteral("Backspace"), QStringLiteral("Delete")});
    EXPECT_EQ(heard.take().toStdString(),
              "remove 0 'z'; remove 4 'z'; caret 4; select 4-4; remove 0 'o'; remove 3 't'; "
              "caret 3; select 3-3");
    harness.press({QStringLiteral("Ctrl+Z"), QStringLiteral("Ctrl+Z")});
    heard.take();
    // Not undoable, as when the file is read again.
    harness.storage.replaceCharactersInRange({0, 2}, QStringLiteral("new"));
    EXPECT_EQ(heard.take().toStdString(), "update 0 'on' to 'new'; caret 5; select 5-5");
}

TEST_F(TextViewAccessibleTest, manyEditsInOneBatchAreToldAsOne)
{
    set(repeated(QStringLiteral("ab\n"), 300));
    std::vector<Selection> carets;
    for (int i = 0; i < 100; ++i)
        carets.push_back(Selection::caret(3 * i));
    harness.editor.setSelections(carets, 0);
    HeardEvents heard(harness);
    harness.press({QStringLiteral("'z'")});
    const QString events = heard.take();
    EXPECT_TRUE(events.startsWith(QStringLiteral("update 0 "))) << events.toStdString();
    EXPECT_LE(events.count(u';'), 34) << events.toStdString();
}

TEST_F(TextViewAccessibleTest, anotherLineIsToldAsAValueWhileTheKeyboardIsElsewhere)
{
    set(QStringLiteral("one\ntwo"));
    HeardEvents heard(harness);
    harness.editor.setSelectedRange({4, 0});
    EXPECT_EQ(heard.take().toStdString(), "caret 4");
    harness.view.clearFocus();
    harness.editor.setSelectedRange({1, 0});
    EXPECT_EQ(heard.take().toStdString(), "caret 1; value 1");
}

} // namespace

} // namespace quillory
