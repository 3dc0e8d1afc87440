#include "AppFixture.h"

#include "app/DocumentWindow.h"
#include "app/GoToLineDialog.h"
#include "document/Document.h"
#include "view/FindIndicator.h"
#include "view/TextViewWidget.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace quillory {

namespace {

using namespace test;

class GoToLineTest : public AppFixture
{
protected:
    /// Types \a place into the sheet and presses Return; the sheet where it is still open then.
    static GoToLineDialog* goTo(DocumentWindow& window, const char* place)
    {
        choose(window, QStringLiteral("Navigate/Go to Line…"));
        auto* sheet = window.findChild<GoToLineDialog*>();
        auto* field = sheet->findChild<QLineEdit*>();
        EXPECT_TRUE(QTest::qWaitFor([&] { return field->hasFocus(); }));
        field->clear();
        QTest::keyClicks(field, QLatin1String(place));
        QTest::keyClick(field, Qt::Key_Return);
        return sheet->isVisible() ? sheet : nullptr;
    }
};

TEST_F(GoToLineTest, selectsTheLineThatIsTyped)
{
    DocumentWindow& window = open(write("a.txt", QByteArray("line\n").repeated(500)));
    const QPTextView& editor = window.document().textView();
    const struct
    {
        const char* typed;
        TextRange selected;
    } cases[]{
        {"400", {1995, 5}},
        {" 7 ", {30, 5}},
        {"501", {2500, 0}},
        {"502", {2500, 0}},                     // past the end: nothing happens
        {"99999999999999999999999", {2500, 0}}, // there neither
        {"3:2", {11, 0}},                       // with a column the caret goes there
        {"3:1", {10, 0}},
    };
    for (const auto& [typed, selected] : cases) {
        EXPECT_EQ(goTo(window, typed), nullptr) << typed;
        EXPECT_EQ(editor.selectedRange(), selected) << typed;
        EXPECT_TRUE(window.view().caretRect().isValid()) << typed;
    }
    (void)goTo(window, "300");
    const auto* bubble = window.view().findChild<FindIndicator*>();
    ASSERT_NE(bubble, nullptr);
    EXPECT_TRUE(bubble->isShowing());
}

TEST_F(GoToLineTest, staysOpenUntilItIsTypedALine)
{
    DocumentWindow& window = open(write("a.txt", "a\nb\nc\n"));
    for (const char* typed : {"0", "-1", "", "x", "2x", "2:0", "1.5"}) {
        GoToLineDialog* sheet = goTo(window, typed);
        ASSERT_NE(sheet, nullptr) << typed;
        EXPECT_EQ(window.document().textView().selectedRange(), TextRange()) << typed;
        auto* buttons = sheet->findChild<QDialogButtonBox*>();
        ASSERT_NE(buttons->button(QDialogButtonBox::Ok), nullptr);
        buttons->button(QDialogButtonBox::Cancel)->click();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window.findChild<GoToLineDialog*>(); }));
    }
}

} // namespace

} // namespace quillory
