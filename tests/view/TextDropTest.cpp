#include "view/SnapshotMimeData.h"

#include "ViewHarness.h"

#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

namespace quillory {

namespace {

class TextDropTest : public testing::Test
{
protected:
    /// What a drag of \a data does, that comes in and is dropped at \a offset.
    bool drop(const QMimeData& data, TextOffset offset,
              Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction)
    {
        QWidget& viewport = *harness.view.viewport();
        const QPoint point = harness.pointOf(offset);
        QDragEnterEvent enter(point, actions, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&viewport, &enter);
        QDragMoveEvent move(point, actions, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&viewport, &move);
        if (!move.isAccepted())
            return false;
        QDropEvent event(point, actions, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&viewport, &event);
        harness.settle();
        return event.isAccepted();
    }

    ViewHarness harness{QStringLiteral("one two\nthree")};
};

TEST_F(TextDropTest, textIsInsertedAndSelected)
{
    QMimeData data;
    data.setText(QStringLiteral("a\r\nb"));
    EXPECT_TRUE(drop(data, 4));
    EXPECT_EQ(harness.marked(), QStringLiteral("one ^a\nb|two\nthree"));
    harness.press({QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(harness.text(), QStringLiteral("one two\nthree"));

    QMimeData link;
    link.setUrls({QUrl(QStringLiteral("https://example.org/"))});
    EXPECT_TRUE(drop(link, 0));
    EXPECT_EQ(harness.text(), QStringLiteral("https://example.org/one two\nthree"));

    harness.editor.setEditable(false);
    EXPECT_FALSE(drop(data, 4));
}

TEST_F(TextDropTest, filesAreForTheWindowToOpen)
{
    QSignalSpy dropped(&harness.view, &TextViewWidget::filesDropped);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a b.txt")),
                  QUrl::fromLocalFile(QStringLiteral("/c"))});
    harness.editor.setEditable(false); // nothing is inserted
    EXPECT_TRUE(drop(data, 4));
    ASSERT_EQ(dropped.count(), 1);
    EXPECT_EQ(dropped[0][0].toStringList(),
              (QStringList{QStringLiteral("/a b.txt"), QStringLiteral("/c")}));
    EXPECT_EQ(harness.text(), QStringLiteral("one two\nthree"));
}

TEST_F(TextDropTest, theCaretOfTheDropIsShownWhereItWouldGo)
{
    QMimeData data;
    data.setText(QStringLiteral("x"));
    const QRect caret = harness.view.caretRectAt(4);
    const auto isPainted = [&] {
        harness.settle();
        const QImage image = harness.view.viewport()->grab().toImage();
        return image.pixelColor(caret.center()) == harness.view.colours().caret;
    };
    EXPECT_FALSE(isPainted());
    QDragEnterEvent enter(caret.center(), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(harness.view.viewport(), &enter);
    EXPECT_TRUE(isPainted());
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(harness.view.viewport(), &leave);
    EXPECT_FALSE(isPainted());
}

TEST_F(TextDropTest, aPressOnSelectedTextThatDoesNotMoveSetsTheCaret)
{
    harness.editor.setSelectedRange({0, 7});
    const QPoint point = harness.pointOf(3);
    QTest::mousePress(harness.view.viewport(), Qt::LeftButton, {}, point);
    EXPECT_EQ(harness.editor.selectedRange(), (TextRange{0, 7}));
    QTest::mouseRelease(harness.view.viewport(), Qt::LeftButton, {}, point);
    EXPECT_EQ(harness.marked(), QStringLiteral("one| two\nthree"));
    // Just behind selected text it is an ordinary press.
    harness.editor.setSelectedRange({0, 3});
    const QPoint behind = harness.pointOf(3) + QPoint(2, 0);
    QTest::mousePress(harness.view.viewport(), Qt::LeftButton, {}, behind);
    EXPECT_EQ(harness.marked(), QStringLiteral("one| two\nthree"));
    QTest::mouseRelease(harness.view.viewport(), Qt::LeftButton, {}, behind);
}

} // namespace

} // namespace quillory
