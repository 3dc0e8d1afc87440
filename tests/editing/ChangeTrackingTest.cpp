#include "editing/ChangeTracking.h"
#include "support/Folders.h"

#include "MarkedEditor.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"
#include "syntax/SyntaxColouring.h"

#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// An editor whose changes are tracked, with what was said in the order in which it was. Typing
/// pauses as soon as events are handled.
struct Tracked
{
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"defaults.conf"_s)};
    ApplicationFolders folders;
    MarkedEditor editor;
    Overlay overlay;
    SyntaxColouring colouring;
    ChangeTracking tracking;
    QStringList said;

    /// \a marked has "|" at its carets. Without a \a file it is plain text.
    explicit Tracked(const QString& marked, const QString& file = {})
        : editor(QString()), colouring(editor.storage, overlay, folders, defaults),
          tracking(editor.view, defaults, colouring, 0ms)
    {
        folders.applicationSupport = folders.resources =
            QStringLiteral(QUILLORY_SOURCE_DIR "/resources");
        if (!file.isEmpty())
            colouring.loadDefinitions(file);
        std::vector<Selection> carets;
        for (qsizetype at = 0; at < marked.size(); ++at) {
            if (marked[at] == u'|')
                carets.push_back(Selection::caret(at - qsizetype(carets.size())));
        }
        editor.storage.replaceCharactersInRange({}, QString(marked).remove(u'|'));
        editor.view.setSelections(carets, carets.size() - 1);
        hear(&ChangeTracking::pageRecolourRequested, u"recolour"_s);
        hear(&ChangeTracking::highlightRequested, u"highlight"_s);
        hear(&ChangeTracking::constrainScrollRequested, u"scroll"_s);
        hear(&ChangeTracking::beep, u"beep"_s);
        hear(&ChangeTracking::completeRequested, u"complete"_s);
        hear(&ChangeTracking::createPreviewRequested, u"preview"_s);
        QObject::connect(&tracking, &ChangeTracking::findIndicatorRequested, &tracking,
                         [this](TextRange range) {
                             said += u"flash %1,%2"_s.arg(range.location).arg(range.length);
                         });
        // As the caret got there before.
        tracking.textViewDidChangeSelection();
        said.clear();
    }

    void hear(void (ChangeTracking::*signal)(), const QString& name)
    {
        QObject::connect(&tracking, signal, &tracking, [this, name] { said += name; });
    }
    QStringList saidBy(const std::function<void(QPTextView&)>& work)
    {
        said.clear();
        work(editor.view);
        return std::exchange(said, {});
    }
    /// What is said once typing pauses.
    QStringList saidInPause()
    {
        said.clear();
        QTest::qWait(5); // the deferred highlight takes one millisecond
        said.removeAll(u"highlight"_s);
        return std::exchange(said, {});
    }
};

void type(QPTextView& view, const char* text)
{
    view.insertText(QString::fromUtf8(text));
}

void step(QPTextView& view, TextOffset by)
{
    view.setSelectedRange({view.primarySelection().head + by, 0});
}

TEST(ChangeTracking, saysWhatFollowsInOrder)
{
    Tracked t(u"f(a, (b)|"_s, u"a.java"_s);
    const auto typeCloser = [](QPTextView& view) { type(view, ")"); };
    EXPECT_EQ(t.saidBy(typeCloser), QStringList({u"recolour"_s, u"flash 1,1"_s}));
    t.defaults.setValue(keys::highlight, true);
    t.defaults.setValue(keys::constrainScroll, true);
    EXPECT_EQ(t.saidBy(typeCloser),
              QStringList({u"recolour"_s, u"beep"_s, u"scroll"_s, u"highlight"_s}));
    // A move alone marks the line a moment later, however many there were.
    EXPECT_EQ(t.saidBy([](QPTextView& view) {
        step(view, -1);
        step(view, -1);
    }),
              QStringList({u"recolour"_s, u"recolour"_s}));
    t.said.clear();
    EXPECT_TRUE(QTest::qWaitFor([&] { return t.said.contains(u"highlight"_s); }));
    EXPECT_EQ(t.said.count(u"highlight"_s), 1);
}

TEST(ChangeTracking, flashesTheOpenerOfABracketThatWasPassed)
{
    const auto right = [](QPTextView& view) { step(view, 1); };
    const auto left = [](QPTextView& view) { step(view, -1); };
    const auto end = [](QPTextView& view) { view.moveToEndOfDocument(false); };
    struct Case
    {
        const char* marked;
        std::function<void(QPTextView&)> work;
        const char* said;
    };
    const Case cases[]{
        {"f(a, (b))|", left, ""},
        {"f(a, (b)|)", right, "flash 1,1"},
        {"f(a, (|b))", end, ""},
        {"[a (] )|]", right, "beep"},
        {"[a [(]|]", right, "flash 0,1"},
        {"a|)", right, "beep"},
        {"|)", right, "beep"},
        {"<{[(|>", right, "flash 0,1"},
        {"{}|}", right, "beep"},
        {"(|a)", right, ""},
        {"(a",
         [](QPTextView& view) {
             view.setSelectedRange({0, 0});
         },
         ""},
        {"(ab|", [](QPTextView& view) { type(view, "c)"); }, ""},
        {"(a|\n(b|", [](QPTextView& view) { type(view, ")"); }, "flash 4,1"},
        {"(a)|", [](QPTextView& view) { view.deleteBackward(); }, ""},
        {"(a|b",
         [](QPTextView& view) {
             const Selection primary = view.primarySelection();
             view.setSelection({primary.anchor, primary.head + 1});
             type(view, ")");
         },
         "flash 0,1"},
    };
    for (const Case& c : cases) {
        Tracked t(QString::fromUtf8(c.marked));
        EXPECT_EQ(t.saidBy(c.work).join(u' '), QString::fromUtf8(c.said)) << c.marked;
    }
}

TEST(ChangeTracking, followsAPauseInTypingOnce)
{
    Tracked t(u"|"_s);
    const auto typeWord = [](QPTextView& view) {
        for (const char* letter : {"w", "o", "r", "d"})
            type(view, letter);
    };
    typeWord(t.editor.view);
    EXPECT_EQ(t.saidInPause(), QStringList(u"preview"_s)) << "completions are off";
    t.defaults.setValue(keys::showCompletions, true);
    typeWord(t.editor.view);
    EXPECT_EQ(t.saidInPause(), QStringList({u"complete"_s, u"preview"_s}));
    EXPECT_EQ(t.saidInPause(), QStringList());
    // What is about to come is postponed, whatever was switched meanwhile.
    type(t.editor.view, "a");
    t.defaults.setValue(keys::showCompletions, false);
    type(t.editor.view, "b");
    EXPECT_EQ(t.saidInPause(), QStringList({u"complete"_s, u"preview"_s}));
    step(t.editor.view, -1);
    EXPECT_EQ(t.saidInPause(), QStringList());
}

TEST(ChangeTracking, asksForCompletionsOnlyWhereAWordMayEnd)
{
    const std::pair<const char*, bool> cases[]{
        {"wor|", true},
        {"wor| d", true},
        {"wor|\nd", true},
        {"wor|\td", true},
        {"wor|)", true},
        {"wor|+", true},
        {"wor|\xF0\x9F\x98\x80", true},
        {"wor|\xE2\x80\xA9", true},
        {"wo|rd", false},
        {"wor|3", false},
        {"wor|\xC3\xA9", false},
        {"|", false},
        {"a wor|\n wo|rd", false},
    };
    for (const auto& [marked, asked] : cases) {
        Tracked t(QString::fromUtf8(marked));
        t.defaults.setValue(keys::showCompletions, true);
        t.editor.view.didChangeText();
        EXPECT_EQ(t.saidInPause().contains(u"complete"_s), asked) << marked;
        t.editor.view.selectAll();
        t.editor.view.didChangeText();
        EXPECT_FALSE(t.saidInPause().contains(u"complete"_s)) << marked;
    }
}

} // namespace
} // namespace quillory
