#include "AppFixture.h"

#include "../view/EventLoopWatchdog.h"

#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QMenu>
#include <QMenuBar>
#include <QTest>

namespace quillory {
namespace {

class MenuValidationTest : public test::AppFixture
{
protected:
    bool isEnabled(DocumentWindow& window, const char* name)
    {
        const QAction* action = command(window, QString::fromUtf8(name));
        EXPECT_TRUE(action) << name;
        return action && action->isEnabled();
    }
};

TEST_F(MenuValidationTest, CommandsFollowTheDocument)
{
    DocumentWindow& window = open(write("a.txt", "<p>text"));
    for (const char* name :
         {"Text/Indent", "Text/Unindent", "Text/Toggle Comment", "Text/Remove Trailing Blanks",
          "Text/Zap Gremlins", "Text/Unwrap", "Text/Reformat"}) {
        window.document().textView().setSelection({0, 0});
        EXPECT_FALSE(isEnabled(window, name)) << name;
        window.document().textView().setSelection({1, 3});
        EXPECT_TRUE(isEnabled(window, name)) << name;
    }
    struct Case
    {
        const char* name;
        bool DocumentRecord::*flag;
    };
    for (const Case& each : {Case{"Text/Close Current Tag", &DocumentRecord::canCloseTags},
                             Case{"View/Preview", &DocumentRecord::canUsePreview},
                             Case{"View/PDF Preview", &DocumentRecord::canUsePDFPreview}}) {
        for (const bool can : {true, false}) {
            window.document().record().*each.flag = can;
            EXPECT_EQ(isEnabled(window, each.name), can) << each.name;
        }
    }
    DocumentWindow& empty = openNew();
    empty.document().record().canCloseTags = true;
    EXPECT_FALSE(isEnabled(empty, "Text/Close Current Tag"));
    EXPECT_TRUE(isEnabled(empty, "View/Keep on Top"));
}

TEST_F(MenuValidationTest, MenusOfALargeTextOpenAtOnce)
{
    DocumentWindow& window = openNew();
    window.document().setDefinitionWithTitle(QStringLiteral("C++"));
    const QString line = QStringLiteral("int f(int x) { return x; } // a line\n");
    window.document().textStorage().replaceCharactersInRange(
        {0, 0}, TextSnapshot(line.repeated(int(100'000'000 / line.size()))));
    window.document().textView().selectAll();
    EventLoopWatchdog watchdog;
    for (QAction* action : window.menuBar()->actions())
        watchdog.watch(qPrintable(action->text()), [&] { Q_EMIT action->menu()->aboutToShow(); });
}

} // namespace
} // namespace quillory
