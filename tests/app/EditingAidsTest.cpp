#include "app/EditingAids.h"

#include "AppFixture.h"

#include "app/DocumentWindow.h"
#include "view/FindIndicator.h"
#include "view/TextViewWidget.h"

#include <QTest>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

class EditingAidsTest : public AppFixture
{};

/// Typing makes the line longer, and so what is in sight another text; the bubble stays all the
/// same.
TEST_F(EditingAidsTest, theOpenerOfABracketThatWasPassedIsShown)
{
    struct Case
    {
        const char* text;
        QStringList keys;
        bool isShown;
    };
    const Case cases[] = {
        {"f(a\n", {u"End"_s, u"')'"_s}, true},
        {"f(a)\n", {u"Right"_s, u"Right"_s, u"Right"_s, u"Right"_s}, true},
        {"f(a\n", {u"End"_s, u"']'"_s}, false},
        {"f(a)\n", {u"End"_s}, false},
    };
    int number = 0;
    for (const Case& c : cases) {
        DocumentWindow& window = open(write(qPrintable(u"%1.txt"_s.arg(number++)), c.text));
        QTest::qWait(50); // for what follows the opening
        press(window, c.keys);
        QCoreApplication::processEvents();
        const auto* indicator = window.view().viewport()->findChild<FindIndicator*>();
        EXPECT_EQ(indicator && indicator->isShowing(), c.isShown) << c.text << number;
    }
}

} // namespace
} // namespace quillory::test
