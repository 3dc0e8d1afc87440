#include "AppFixture.h"

#include "view/LineNumberView.h"
#include "view/TextViewWidget.h"

#include <QTest>

namespace quillory::test {
namespace {

class LineNumbersTest : public AppFixture
{};

TEST_F(LineNumbersTest, everyWindowHasThemAndMayHideItsOwn)
{
    DocumentWindow& window = open(write("a.txt", QByteArray("line\n").repeated(1233)));
    LineNumberView& ruler = window.ruler();
    EXPECT_TRUE(ruler.isVisible());
    EXPECT_EQ(ruler.lineIndices().count(), 1234);
    EXPECT_EQ(ruler.width(), ruler.requiredThickness());
    EXPECT_EQ(window.view().viewport()->x(), ruler.width());
    DocumentWindow& other = openNew();
    choose(window, QStringLiteral("View/Line Numbers"));
    EXPECT_FALSE(ruler.isVisible());
    EXPECT_EQ(window.view().viewport()->x(), 0);
    EXPECT_FALSE(command(window, QStringLiteral("View/Line Numbers"))->isChecked());
    EXPECT_TRUE(other.ruler().isVisible());
    // Other settings leave it as it is.
    choose(window, QStringLiteral("View/Wrap Lines"));
    QTest::qWait(30);
    EXPECT_FALSE(ruler.isVisible());
    choose(window, QStringLiteral("View/Line Numbers"));
    EXPECT_EQ(window.view().viewport()->x(), ruler.width());
}

TEST_F(LineNumbersTest, theTextStandsWhereItWillFromTheFirst)
{
    const QString path = write("a.txt", QByteArray("line\n").repeated(1233));
    class Places : public QObject
    {
    public:
        bool eventFilter(QObject* watched, QEvent* event) override
        {
            const auto* view = qobject_cast<TextViewWidget*>(watched->parent());
            if (event->type() == QEvent::Paint && view && watched == view->viewport())
                seen.append(view->viewport()->x());
            return false;
        }
        QList<int> seen;
    } places;
    qApp->installEventFilter(&places);
    DocumentWindow& window = open(path);
    QTest::qWait(50);
    qApp->removeEventFilter(&places);
    ASSERT_FALSE(places.seen.isEmpty());
    for (const int x : std::as_const(places.seen))
        EXPECT_EQ(x, window.ruler().requiredThickness());
}

TEST_F(LineNumbersTest, theyFollowTheTheme)
{
    DocumentWindow& window = open(write("a.txt", "line\n"));
    for (const char* theme : {"Insomniac", "Default"}) {
        choose(window, QStringLiteral("View/Theme/") + QLatin1StringView(theme));
        QTest::qWait(30);
        EXPECT_EQ(window.ruler().look().backgroundColor, window.view().colours().background);
    }
}

} // namespace
} // namespace quillory::test
