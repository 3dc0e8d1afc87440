#include "ViewHarness.h"

#include <QScrollBar>

namespace quillory {

namespace {

QString numberedLines(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QStringLiteral("line %1 of this text\n").arg(i);
    return text;
}

TEST(WorkCounters, aKeyLaysOutOneLine)
{
    ViewHarness harness(numberedLines(1000));
    for (const TextOffset offset : {TextOffset(3), harness.storage.length() / 2}) {
        harness.editor.setSelectedRange({offset, 0});
        harness.view.ensureVisible(offset);
        harness.settle();
        WorkDone done(harness);
        harness.press({QStringLiteral("'x'")});
        EXPECT_EQ(done().linesLaidOut, 1);
        EXPECT_EQ(done().chunksLaidOut, 0);
        EXPECT_EQ(done().layoutsColoured, 1);
    }
}

TEST(WorkCounters, returnLaysOutBothHalvesOfTheLineAndNothingBelow)
{
    ViewHarness harness(numberedLines(1000));
    harness.editor.setSelectedRange({30, 0});
    WorkDone done(harness);
    harness.press({QStringLiteral("Return")});
    EXPECT_EQ(done().linesLaidOut, 2);
}

TEST(WorkCounters, movingTheCaretAndBlinkingLayOutNothing)
{
    ViewHarness harness(numberedLines(1000));
    WorkDone done(harness);
    harness.press({QStringLiteral("Down"), QStringLiteral("Right"), QStringLiteral("End"),
                   QStringLiteral("Shift+Up"), QStringLiteral("Ctrl+Right")});
    EXPECT_EQ(done().linesLaidOut, 0);
    EXPECT_EQ(done().layoutsColoured, 0);
}

TEST(WorkCounters, scrollingByAStepLaysOutWhatComesIntoSight)
{
    ViewHarness harness(numberedLines(1000));
    WorkDone done(harness);
    harness.view.scrollBy(0, 3 * harness.view.caretRect().height());
    EXPECT_EQ(done().linesLaidOut, 3);
    harness.view.scrollBy(0, -harness.view.viewport()->height());
    EXPECT_EQ(done().linesLaidOut, 3);
}

TEST(WorkCounters, coloursAreAppliedWithoutLayingOut)
{
    ViewHarness harness(numberedLines(1000));
    WorkDone done(harness);
    OverlayAttributes red;
    red.foreground = Colour{1, 0, 0, 1};
    harness.overlay.setAttributes({2, 3}, red);
    harness.overlay.setAttributes({45, 3}, red);
    EXPECT_EQ(done().linesLaidOut, 0);
    EXPECT_EQ(done().layoutsColoured, 2);
}

class LongLineWork : public testing::TestWithParam<bool>
{};

TEST_P(LongLineWork, aKeyLaysOutOneChunkAtAnyColumn)
{
    ViewHarness harness(repeated(QStringLiteral("{\"key\": 12345}, "), 3'000'000));
    harness.view.setWrapLines(GetParam());
    for (const TextOffset offset : {TextOffset(10), TextOffset(1'500'000), TextOffset(2'999'990)}) {
        SCOPED_TRACE(offset);
        harness.editor.setSelectedRange({offset, 0});
        harness.view.ensureVisible(offset);
        harness.settle();
        WorkDone done(harness);
        harness.press({QStringLiteral("'x'")});
        // Wrapped, twice more where the edit moves the row that the next chunk begins with.
        const qint64 most = GetParam() ? 3 : 1;
        EXPECT_GE(done().chunksLaidOut, 1);
        EXPECT_LE(done().chunksLaidOut, most);
        EXPECT_LE(done().unitsShaped, most * LineChunks::longLine);
    }
}

TEST_P(LongLineWork, jumpingInAChunkedLineLaysOutWhatIsInSight)
{
    ViewHarness harness;
    harness.view.setWrapLines(GetParam());
    WorkDone done(harness);
    harness.storage.replaceCharactersInRange(
        {}, repeated(QStringLiteral("{\"key\": 12345}, "), 3'000'000));
    harness.press({QStringLiteral("Ctrl+End")});
    // Wrapped, chunks above are laid out to find where their rows begin.
    const qint64 most = GetParam() ? 40 : 6;
    EXPECT_LE(done().chunksLaidOut, most);
    harness.press({QStringLiteral("Ctrl+Home")});
    EXPECT_LE(done().chunksLaidOut, most + 6);
    EXPECT_LE(done().unitsShaped, (most + 6) * LineChunks::longLine);
}

TEST(WorkCounters, aJumpInWrappedLinesLaysOutEachChunkOnce)
{
    for (const QString& line : {QStringLiteral("{\"key\": 12345}, "), QStringLiteral("\u0301")}) {
        ViewHarness harness(repeated(line, 3'000'000));
        harness.view.setWrapLines(true);
        harness.settle();
        WorkDone done(harness);
        harness.press({QStringLiteral("Ctrl+End")});
        // Rows of marks, which take no room, hold a chunk each; and a few chunks are laid out
        // above.
        const size_t rows = harness.view.textViewport().rows().size();
        EXPECT_LE(done().chunksLaidOut, qint64(rows) + 12);
        EXPECT_LE(done().unitsShaped, (qint64(rows) + 12) * LineChunks::chunkLength);
        for (const int width : {700, 801}) {
            WorkDone resized(harness);
            harness.view.resize(width, 400);
            EXPECT_LE(resized().unitsShaped, (qint64(rows) + 12) * LineChunks::chunkLength);
        }
    }
}

TEST_P(LongLineWork, resizingLaysOutWhatIsInSight)
{
    ViewHarness harness(repeated(QStringLiteral("{\"key\": 12345}, "), 3'000'000));
    harness.view.setWrapLines(GetParam());
    for (const TextOffset offset : {TextOffset(0), TextOffset(1'500'000), TextOffset(3'000'000)}) {
        SCOPED_TRACE(offset);
        harness.view.ensureVisible(offset);
        harness.settle();
        for (const int width : {700, 500, 901, 800}) {
            WorkDone done(harness);
            harness.view.resize(width, 400);
            EXPECT_LE(done().chunksLaidOut, GetParam() ? 45 : 3) << width;
        }
    }
}

TEST(WorkCounters, resizingLaysOutTheWrappedLinesInSightAndLooksAtNoOthers)
{
    ViewHarness harness(numberedLines(200'000).replace(u"this"_qs, u"this "_qs.repeated(20)));
    harness.view.setWrapLines(true);
    for (const double share : {0.0, 0.5, 1.0}) {
        SCOPED_TRACE(share);
        QScrollBar& bar = *harness.view.verticalScrollBar();
        bar.setValue(int(bar.maximum() * share));
        harness.settle();
        for (const int width : {700, 500, 901, 800}) {
            WorkDone done(harness);
            harness.view.resize(width, 400);
            EXPECT_LE(done().linesLaidOut, 30) << width;
            EXPECT_LE(done().piecesVisited, 300) << width;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Wrapping, LongLineWork, testing::Bool());

} // namespace

} // namespace quillory
