// Texts are written with "«" for the anchor of a selection and "»" for its head, "‹" and "›" for
// the head and the anchor of a backward one, and "|" for a caret.

#include "MarkedEditor.h"
#include "foundation/UserDefaults.h"
#include "text/TextBoundary.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

class TypingRulesTest : public testing::Test
{
protected:
    enum Key
    {
        Return,
        Tab,
        Brace,
        Round,
        Angle,
        KeyCount
    };

    struct Case
    {
        const char* before;
        const char* after;
    };

    TypingRulesTest() { turn(true); }

    void turn(bool on)
    {
        defaults.setValue(keys::indentNewLinesBraces, on);
        defaults.setValue(keys::insertClosingParenthesisandBrace, on);
    }

    MarkedEditor editor(const char* marked) const
    {
        return MarkedEditor(QString::fromUtf8(marked), &defaults, QStringLiteral("«»‹›|"));
    }

    static void press(QPTextView& view, Key key)
    {
        if (key == Return)
            view.insertNewline();
        else if (key == Tab)
            view.insertTab();
        else
            view.insertText(QString(QLatin1String("}(<")[key - Brace]));
    }

    /// One step takes the key back, selections included.
    void check(Key key, const std::vector<Case>& cases) const
    {
        for (const Case& c : cases) {
            MarkedEditor e = editor(c.before);
            QSignalSpy changed(&e.view, &QPTextView::textDidChange);
            const TextSnapshot before = e.view.string();
            press(e.view, key);
            EXPECT_EQ(e.marked(), c.after) << c.before;
            EXPECT_EQ(changed.count(), e.view.string() == before ? 0 : 1) << c.before;
            if (!e.undo.canUndo()) {
                EXPECT_TRUE(e.undo.isClean()) << c.before;
                continue;
            }
            e.view.undo();
            EXPECT_EQ(e.marked(), c.before);
            EXPECT_TRUE(e.undo.isClean()) << c.before;
            e.view.redo();
            EXPECT_EQ(e.marked(), c.after) << c.before;
        }
    }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("defaults"))};
};

TEST_F(TypingRulesTest, returnTakesTheIndentationAlong)
{
    check(Return,
          {
              {"    if (x) {|", "    if (x) {\n    \t|"},
              {"\t{ \t |x", "\t{ \t \n\t\t|x"}, // blanks behind the brace
              {"  a { b|", "  a { b\n  |"},     // not the last character
              {"a\n{|\nb", "a\n{\n\t|\nb"},     // no indentation
              {"\t  |  a", "\t  \n\t  |  a"},   // inside the indentation
              {"  |  {", "  \n  |  {"},         // only what was before the caret counts
              {"|\ta", "\n|\ta"},
              {" \t\u00a0\u3000x|", " \t\u00a0\u3000x\n \t\u00a0\u3000|"},
              {"  a«bc\n  d»e", "  a\n  |e"}, // in the place of a selection
              {"  a {\r\n  b|", "  a {\r\n  b\n  |"},
              {"\ta\u2028 {|", "\ta\u2028 {\n \t|"},   // a line separator ends a line
              {"  a|b|c", "  a\n  |b\n  |c"},          // on one line
              {"  {|   |", "  {\n  \t|   \n  \t   |"}, // the second sees what the first made
              {"\t«{»«}»", "\t\n\t|\n\t|"},            // that touch
              {" {|\n  {|\n", " {\n \t|\n  {\n  \t|\n"},
          });
}

TEST_F(TypingRulesTest, tabIndentsLinesTypesOrCollapses)
{
    check(Tab, {
                   {"«a\nb\n»c", "\t«a\n\tb\n»c"}, // two lines, not three
                   {"  « a\n»\n", "\t  « a\n»\n"},
                   {" ‹\n\nx›", "\t ‹\n\t\n\tx›"}, // blank lines too; the direction stays
                   {"«a»", "\t«a»"},
                   {"\u00a0«a»", "\u00a0a|"}, // only spaces and tabs are indentation
                   {"a« b\nc»d", "a b\nc|d"}, // begins behind it
                   {"a‹b›", "ab|"},
                   {"a|b", "a\t|b"},
                   {"|\n|a|b", "\t|\n\t|a\t|b"},
                   {"«a\n»«b\n»", "\t«a\n»\t«b\n»"}, // that touch
                   {"«a» «b» c«d»", "\t«a» b| cd|"},
                   {"|  «x»", "\t\t|  «x»"}, // the line's tab goes before the caret
                   {" « \n »« \n»", "\t « \n\t\t »« \n»"},
               });
}

TEST_F(TypingRulesTest, closingBraceTakesTheIndentationOfItsOpener)
{
    check(Brace, {
                     {"\t{\n  |", "\t{\n\t}|"},
                     {"\tif {\n\t\t|\n", "\tif {\n\t}|\n"},
                     {"{\n\t|\nx", "{\n}|\nx"},
                     {"{\n  |x", "{\n}|x"},
                     {"{\n|", "{\n}|"},
                     {" {\r\n|\r\n", " {\r\n }|\r\n"},
                     {" {\n\u3000|\n", " {\n }|\n"},
                     {" {\n\t{ {} }\n\t|", " {\n\t{ {} }\n }|"},
                     {" { // }\n\t|", " { // }\n\t}|"}, // comments count
                     {" ( [ {\n\t)|", " ( [ {\n\t)}|"}, // not blank before
                     {"\t{|", "\t{}|"},
                     {"  |", "  }|"},                  // nothing to close
                     {"\t{\n  «x»\n", "\t{\n\t}|x\n"}, // what is selected stays
                     {"\t{\n  ‹x\ny›", "\t{\n\t}|x\ny"},
                     {"\t{\nx«  y»", "\t{\nx}|"},
                     {"{\n\t{\n|\n|\n|", "{\n\t{\n\t}|\n}|\n}|"}, // each closes another
                     {"\t{\n | |\n", "\t{\n\t}| }|\n"},
                     {"\t{\n « » |\n", "\t{\n\t}|  }|\n"},
                     {" {\n |{\n|", " {\n }|{\n }|"},
                 });
}

TEST_F(TypingRulesTest, blanksOfALastLineGoForGood)
{
    struct Step
    {
        const char* before;
        const char* after;
        const char* undone;
    };
    const Step steps[] = {
        {"{\n   |", "{\n}|", "{\n|"},
        {"x|{\n  |", "x}|{\n}|", "x|{\n|"},
        {"{{\n |\n\t|", "{{\n}|\n}|", "{{\n |\n|"},
    };
    for (const Step& step : steps) {
        MarkedEditor e = editor(step.before);
        const auto carets = e.view.selections();
        e.view.setSelection(Selection::caret(0));
        e.view.insertText(QStringLiteral("//"));
        std::vector<Selection> moved = carets;
        for (Selection& caret : moved)
            caret = Selection::caret(caret.head + 2);
        e.view.setSelections(moved, moved.size() - 1);

        press(e.view, Brace);
        EXPECT_EQ(e.marked(), std::string("//") + step.after);
        e.view.undo();
        EXPECT_EQ(e.marked(), std::string("//") + step.undone);
        EXPECT_FALSE(e.undo.isClean());
        e.view.undo();
        EXPECT_EQ(e.view.string(), editor(step.undone).view.string());
        e.view.redo();
        e.view.redo();
        EXPECT_EQ(e.marked(), std::string("//") + step.after);
    }

    MarkedEditor locked = editor("{\n   |");
    locked.view.setEditable(false);
    QSignalSpy beeps(&locked.view, &QPTextView::beep);
    press(locked.view, Brace);
    EXPECT_EQ(locked.marked(), "{\n   |");
    EXPECT_EQ(beeps.count(), 1);
}

TEST_F(TypingRulesTest, openersBringTheirClosers)
{
    check(Round, {{"a|b", "a(|)b"}, {"a«bc»", "a(|)"}, {"|a|)", "(|)a(|))"}, {"«a»«b»", "(|)(|)"}});
    check(Angle, {{"a|", "a<|>"}});
    for (const char* plain : {"((", "x", "\"", "()", "})"}) {
        MarkedEditor e = editor("{\n|x");
        e.view.insertText(QLatin1String(plain));
        EXPECT_EQ(e.marked(), std::string("{\n") + plain + "|x");
    }
}

TEST_F(TypingRulesTest, switchesAreReadAtTheKey)
{
    MarkedEditor e = editor("\t{|\n");
    press(e.view, Return);
    EXPECT_EQ(e.marked(), "\t{\n\t\t|\n");
    turn(false);
    check(Return, {{"\t{|", "\t{\n|"}});
    check(Brace, {{"\t{\n  |", "\t{\n  }|"}});
    check(Round, {{"a|b", "a(|b"}});
    check(Tab, {{"« a»", "\t« a»"}}); // has no switch
    press(e.view, Round);
    EXPECT_EQ(e.marked(), "\t{\n\t\t(|\n");
    turn(true);
    press(e.view, Round);
    EXPECT_EQ(e.marked(), "\t{\n\t\t((|)\n");
}

TEST_F(TypingRulesTest, stepsOfUndoAreWordsAndLines)
{
    MarkedEditor e = editor("\t|");
    for (const char* typed : {"f", "o", "(", "x", ";"})
        e.view.insertText(QLatin1String(typed));
    press(e.view, Return);
    e.view.insertText(QStringLiteral("y"));
    e.view.insertText(QStringLiteral("{"));
    press(e.view, Return);
    press(e.view, Brace);
    EXPECT_EQ(e.marked(), "\tfo(x;\n\ty{\n\t}|})");
    for (const char* before :
         {"\tfo(x;\n\ty{\n\t\t|})", "\tfo(x;\n\ty{|})", "\tfo(x;\n\t|)", "\tfo(x;|)", "\t|"}) {
        e.view.undo();
        EXPECT_EQ(e.marked(), before);
    }
}

/// Follows a selection through what is done at others.
struct FollowedSelections
{
    std::vector<Selection> selections;

    void follow(const TextChange& change)
    {
        for (Selection& selection : selections)
            selection = {mapped(selection.anchor, change), mapped(selection.head, change)};
    }
};

TEST_F(TypingRulesTest, manySelectionsAreAsOneAfterTheOther)
{
    std::mt19937 random(11);
    const QString units = QStringLiteral("{{}\n\n\n\t   a(");
    for (int round = 0; round < 20'000; ++round) {
        QString text;
        for (unsigned n = random() % 25; n > 0; --n)
            text += units[qsizetype(random() % size_t(units.size()))];
        std::vector<Selection> selections;
        for (unsigned n = 1 + random() % 4; n > 0; --n) {
            const auto place = [&] { return TextOffset(random() % size_t(text.size() + 1)); };
            const TextOffset caret = place();
            selections.push_back({caret, random() % 2 ? caret : place()});
        }
        const Key key = Key(random() % KeyCount);

        MarkedEditor many = editor("|");
        many.storage.replaceCharactersInRange({0, 0}, text);
        many.undo.markClean();
        many.view.setSelections(selections, 0);
        const std::string before = many.marked();

        MarkedEditor one = editor("|");
        one.storage.replaceCharactersInRange({0, 0}, text);
        FollowedSelections others{many.view.selections()};
        QObject::connect(&one.storage, &TextStorage::edited,
                         [&](const TextChange& change) { others.follow(change); });
        for (size_t i = 0; i < others.selections.size(); ++i) {
            one.view.setSelection(others.selections[i]);
            press(one.view, key);
            others.selections[i] = one.view.primarySelection();
        }
        one.view.setSelections(others.selections, 0);

        press(many.view, key);
        ASSERT_EQ(many.marked(), one.marked()) << before << "\n-- key " << key;
        if (!many.undo.canUndo())
            continue;
        many.view.undo();
        if (many.undo.isClean()) { // or blanks went for good
            ASSERT_EQ(many.marked(), before) << "key " << key;
        }
        many.view.redo();
        ASSERT_EQ(many.marked(), one.marked()) << before << "\n-- redo " << key;
    }
}

TEST_F(TypingRulesTest, doubleClickSelectsBracketsAndSegments)
{
    struct Click
    {
        const char* text;
        TextOffset at;
        const char* selected;
        int beeps = 0;
    };
    const Click clicks[] = {
        {"(a (b) c)", 0, "(a (b) c)"},
        {"(a (b) c)", 8, "(a (b) c)"},
        {"(a (b) c)", 3, "(b)"},
        {"({)}", 1, "{)}"},
        {"a[0] <b>", 5, "<b>"},
        {"a)", 1, ")", 1},
        {"((a)", 0, "(", 1},
        {"(\u0301a", 0, "(\u0301", 1}, // with the mark on it
        {"object.property", 2, "object"},
        {"object.property", 6, "object.property"}, // the stop itself
        {"object.property", 7, "property"},
        {"a.bcd.e", 3, "bcd"},
        {"ns:tag", 4, "tag"},
        {"ns:tag", 0, "ns"},
        {"3.14", 0, "3"},
        {"plain word", 7, "word"},
        {"a  b", 1, "  "},
        {"a b.c", 5, "b.c"}, // the text's end: as any word
    };
    for (const Click& click : clicks) {
        MarkedEditor e = editor((std::string("|") + click.text).c_str());
        QPTextView& view = e.view;
        QSignalSpy beeps(&view, &QPTextView::beep);
        const auto selected = [&](SelectionGranularity granularity, int count) {
            return view.string()
                .string(view.selectionRangeForProposedRange({click.at, 0}, granularity, count))
                .toStdString();
        };
        EXPECT_EQ(selected(SelectionGranularity::Word, 2), click.selected) << click.at;
        EXPECT_EQ(beeps.count(), click.beeps) << click.text;
        for (const int count : {1, 3}) {
            const TextRange word = wordAt(view.string(), click.at);
            EXPECT_EQ(selected(SelectionGranularity::Word, count),
                      view.string().string(word).toStdString());
        }
        EXPECT_EQ(selected(SelectionGranularity::Character, 2), "");
        EXPECT_EQ(beeps.count(), click.beeps) << click.text;
    }
}

} // namespace
} // namespace quillory
