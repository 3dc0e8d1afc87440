#include "editing/CurrentLineHighlight.h"
#include "MarkedEditor.h"
#include "foundation/UserDefaults.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {

namespace {

class CurrentLineHighlightTest : public testing::Test
{
protected:
    CurrentLineHighlightTest()
    {
        QObject::connect(&editor.storage, &TextStorage::edited, &overlay, &Overlay::textChanged);
        QObject::connect(&overlay, &Overlay::lineBandChanged, [this] { ++changes; });
        defaults.setValue(keys::highlight, true);
    }

    TextRange band() const
    {
        return overlay.lineBand() ? overlay.lineBand()->range : TextRange{-1, 0};
    }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("defaults"))};
    MarkedEditor editor{QStringLiteral("one\ntwo\r\n\nlast\n")};
    Overlay overlay;
    CurrentLineHighlight highlight{editor.view, overlay, defaults};
    int changes = 0;
};

TEST_F(CurrentLineHighlightTest, bandsTheLinesOfTheSelection)
{
    // "one\n" begins at 0, "two\r\n" at 4, "\n" at 9, "last\n" at 10, the empty last line at 15.
    const struct
    {
        std::vector<Selection> selections;
        TextRange band;
    } cases[]{
        {{Selection::caret(0)}, {0, 4}},
        {{Selection::caret(3)}, {0, 4}},
        {{Selection::caret(8)}, {4, 5}}, // between CR and LF
        {{Selection::caret(9)}, {9, 1}},
        {{Selection::caret(15)}, {15, 0}},
        {{{0, 4}}, {0, 4}}, // ends where the next line begins
        {{{5, 2}}, {0, 9}},
        {{{0, 15}}, {0, 15}},
        {{Selection::caret(1), {5, 10}}, {4, 6}}, // the primary one is the last
    };
    for (const auto& [selections, expected] : cases) {
        editor.view.setSelections(selections, selections.size() - 1);
        highlight.highlight();
        EXPECT_EQ(band(), expected) << "caret at " << selections.back().head;
        EXPECT_EQ(highlight.lastLineHighlightRange(), expected);
    }
}

TEST_F(CurrentLineHighlightTest, aBandThatLiesWhereItShouldIsLeftAlone)
{
    highlight.highlight();
    EXPECT_EQ(changes, 1); // also where the last range was the same, but no band there
    editor.view.setSelectedRange({2, 1});
    highlight.highlight();
    EXPECT_EQ(changes, 1);
    // It follows what is typed into it, and what is typed above.
    editor.view.insertText(QStringLiteral("x"));
    editor.storage.replaceCharactersInRange({0, 0}, QStringLiteral("#"));
    highlight.highlight();
    EXPECT_EQ(band(), (TextRange{0, 5}));
    EXPECT_EQ(changes, 1);
    editor.view.setSelectedRange({5, 0});
    highlight.highlight();
    EXPECT_EQ(changes, 2);
    editor.storage.replaceCharactersInRange({0, 5}, QStringLiteral("a\nb\n"));
    EXPECT_EQ(band(), (TextRange{4, 5}));
    EXPECT_EQ(highlight.lastLineHighlightRange(), band());
    EXPECT_TRUE(overlay.isEmpty()); // nothing but the band
}

TEST_F(CurrentLineHighlightTest, comesAndGoesWithTheUserDefault)
{
    defaults.setValue(keys::highlight, false);
    highlight.highlight();
    highlight.changeHighlight();
    EXPECT_FALSE(overlay.lineBand());
    defaults.setValue(keys::highlight, true);
    editor.view.setSelectedRange({5, 0});
    highlight.highlight();
    ASSERT_EQ(band(), (TextRange{4, 5}));
    defaults.setValue(keys::highlight, false);
    highlight.changeHighlight();
    EXPECT_FALSE(overlay.lineBand());
    editor.storage.replaceCharactersInRange({0, 1}, QStringLiteral("---"));
    defaults.setValue(keys::highlight, true);
    highlight.changeHighlight();
    EXPECT_EQ(band(), (TextRange{6, 5}));
}

TEST_F(CurrentLineHighlightTest, takesItsColourFromTheTheme)
{
    highlight.highlight();
    EXPECT_EQ(overlay.lineBand()->colour, (Colour{0.229F, 0.229F, 0.229F, 0.2F}));
    highlight.setThemeColour(Colour{1, 0, 0, 0.5F});
    EXPECT_EQ(overlay.lineBand()->colour, (Colour{1, 0, 0, 0.5F}));
    highlight.setThemeColour({});
    EXPECT_EQ(overlay.lineBand()->colour, CurrentLineHighlight::defaultBand);
}

} // namespace

} // namespace quillory
