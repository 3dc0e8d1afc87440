#include "editing/BlockCommands.h"

#include "MarkedEditor.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace quillory {
namespace {

TEST(ClosingTag, TheInnermostOpenElementIsClosed)
{
    struct Case
    {
        const char* before;
        const char* inserted; // null for a beep
    };
    const Case cases[] = {
        {"<ul><li>one</li><li>two|", "</li>"},
        {"<ul><li>one</li>|", "</ul>"},
        {"<ul><li>one</li>|</ul>", "</ul>"},
        {"<div class=\"a\">|", "</div>"},
        {"<Div>|", "</Div>"},
        {"<a><b></a>|", "</a>"}, // elements are counted, not compared
        {"<a></b></c>|", nullptr},
        // Never closed, whatever the case.
        {"<p>text<br>|", "</p>"},
        {"<p>text<BR/><hr><Hr /><br />|", "</p>"},
        {"<p>text<img src=\"x\">|", "</p>"},
        {"<p><area a><base b><link c><meta d><frame e><input f><param g>|", "</p>"},
        {"<p><imgx>|", "</imgx>"},
        {"<p><input>|", "</input>"},
        {"<p><!-- note -->|", "</p>"},
        {"<p><?php echo 1 ?><% x %>|", "</p>"},
        {"<p><a<? b>|", "</p>"}, // anywhere in four units
        {"<?>|", "</?>"},        // of which there are not four here
        {"<?> |", nullptr},
        {"<br>|", nullptr},
        // Closes itself.
        {"<div><span/>|", "</div>"},
        {"<div><span a=\"/\" / >|", "</span>"},
        {"<div><a href=x/>|", "</div>"},
        {"<div><a/b>|", "</a>"},
        {"<div><a <b/>|", "</div>"}, // both end at the same ">"
        // Only what is before the last ">" counts.
        {"<div>a<b|", "</div>"},
        {"<div|", nullptr},
        {"a < b > c|", "</>"},
        {"<>|", "</>"},
        {"<a\nb>|", "</a\nb>"},
        {"<a>|</a>", "</a>"},
        {"</|>", nullptr},
        {"a > b|", nullptr},
        {"|<a>", nullptr},
        {"|", nullptr},
    };
    for (const Case& c : cases) {
        MarkedEditor editor(QString::fromLatin1(c.before));
        BlockCommands commands(editor.view, [] { return QString(); });
        QSignalSpy beeps(&editor.view, &QPTextView::beep);
        commands.closeCurrentTag();
        EXPECT_EQ(beeps.size(), c.inserted ? 0 : 1) << c.before;
        std::string expected = c.before;
        if (c.inserted)
            expected.insert(expected.find('|'), c.inserted);
        EXPECT_EQ(editor.marked(), expected);
        if (!c.inserted) {
            EXPECT_FALSE(editor.undo.canUndo());
            continue;
        }
        editor.view.undo();
        EXPECT_EQ(editor.marked(), c.before);
        editor.view.redo();
        EXPECT_EQ(editor.marked(), expected);
    }
}

TEST(ClosingTag, SeveralCaretsCloseOneAfterTheOther)
{
    MarkedEditor editor(QStringLiteral("x|<a><b>|\n<i>|"));
    BlockCommands commands(editor.view, [] { return QString(); });
    QSignalSpy beeps(&editor.view, &QPTextView::beep);
    commands.closeCurrentTag();
    EXPECT_EQ(editor.marked(), "x|<a><b></b>|\n<i></i>|");
    EXPECT_EQ(beeps.size(), 1); // nothing is open before the first
    commands.closeCurrentTag();
    EXPECT_EQ(editor.marked(), "x|<a><b></b></a>|\n<i></i>|");
    editor.view.undo();
    editor.view.undo();
    EXPECT_EQ(editor.marked(), "x|<a><b>|\n<i>|");
}

// A long search goes on aside; typing meanwhile gives it up.
TEST(ClosingTag, ALongSearchDoesNotHoldUpTheNextKey)
{
    const QString balanced = QStringLiteral("<i></i>").repeated(100'000);
    for (const bool typesOn : {false, true}) {
        MarkedEditor editor(u"<p>" + balanced + u'|');
        BlockCommands commands(editor.view, [] { return QString(); });
        commands.closeCurrentTag();
        EXPECT_FALSE(editor.undo.canUndo());
        if (typesOn)
            editor.view.insertText(QStringLiteral("x"));
        const TextOffset length = 3 + balanced.size() + (typesOn ? 1 : 4);
        const auto isClosed = [&] { return editor.storage.length() == 3 + balanced.size() + 4; };
        EXPECT_EQ(QTest::qWaitFor(isClosed, typesOn ? 500 : 20'000), !typesOn);
        EXPECT_EQ(editor.storage.length(), length);
    }
}

} // namespace
} // namespace quillory
