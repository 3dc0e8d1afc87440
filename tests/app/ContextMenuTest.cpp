#include "AppFixture.h"

#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QUrl>

namespace quillory::test {
namespace {

class ContextMenuTest : public AppFixture
{
protected:
    /// The names of the commands that can be chosen.
    static QStringList enabledCommands(const QMenu& menu)
    {
        QStringList names;
        for (const QAction* action : menu.actions()) {
            if (!action->isSeparator() && action->isEnabled())
                names += action->text().remove(u'&');
        }
        return names;
    }

    static void ask(DocumentWindow& window, QPoint point)
    {
        QWidget& viewport = *window.view().viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, viewport.mapToGlobal(point));
        QCoreApplication::sendEvent(&viewport, &event);
    }
};

TEST_F(ContextMenuTest, theMouseAndTheKeysShowIt)
{
    DocumentWindow& window = open(write("a.txt", "one two three\n"));
    QPTextView& editor = window.document().textView();
    QMenu& menu = *editor.contextMenu();
    TextViewWidget& view = window.view();

    editor.setSelectedRange({4, 3});
    ask(window, view.caretRectAt(5).center());
    EXPECT_TRUE(menu.isVisible());
    EXPECT_EQ(editor.selectedRange(), (TextRange{4, 3}));
    EXPECT_EQ(enabledCommands(menu),
              (QStringList{QStringLiteral("Cut"), QStringLiteral("Copy"), QStringLiteral("Paste"),
                           QStringLiteral("Delete"), QStringLiteral("Select All")}));
    QTest::keyClick(&menu, Qt::Key_D); // its letter
    EXPECT_EQ(textOf(window), QStringLiteral("one  three\n"));

    ask(window, view.caretRectAt(9).center());
    EXPECT_EQ(editor.selectedRange(), (TextRange{9, 0}));
    EXPECT_EQ(enabledCommands(menu),
              (QStringList{QStringLiteral("Undo Delete"), QStringLiteral("Paste"),
                           QStringLiteral("Select All")}));
    menu.close();

    press(window, {QStringLiteral("Shift+F10")});
    EXPECT_TRUE(menu.isVisible());
    const QRect caret = view.caretRect();
    EXPECT_NEAR(menu.pos().x(), view.viewport()->mapToGlobal(caret.bottomLeft()).x(), 4);
    menu.close();
}

TEST_F(ContextMenuTest, filesDroppedAnywhereOnTheWindowAreOpened)
{
    DocumentWindow& window = openNew();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(write("a.txt", "first")),
                  QUrl::fromLocalFile(write("b.txt", "second")),
                  QUrl::fromLocalFile(folder.path())});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window.view().viewport(), &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window.view().viewport(), &event);
    EXPECT_TRUE(QTest::qWaitFor([&] { return controller.windows().size() == 2; }, 20000));
    QStringList texts;
    for (const DocumentWindow* shown : controller.windows())
        texts += textOf(*shown);
    texts.sort();
    EXPECT_EQ(texts, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !questions.told.isEmpty(); }, 20000)) << "the folder";
}

} // namespace
} // namespace quillory::test
