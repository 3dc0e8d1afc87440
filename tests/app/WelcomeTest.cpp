#include "AppFixture.h"

#include "app/Shell.h"
#include "app/TitleBarButtons.h"
#include "app/TitleBarDecoration.h"
#include "app/WelcomeWindow.h"
#include "document/Document.h"
#include "view/Contrast.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

class WelcomeTest : public AppFixture
{
protected:
    WelcomeTest() { defaults.setValue(keys::dontAsk, true); }

    WelcomeWindow& welcome(DocumentWindow& window)
    {
        choose(window, u"Help/Welcome…"_s);
        WelcomeWindow* shown = Shell::of(*controller.windows().back()).welcomeWindow();
        if (!shown)
            qFatal("there is no welcome window");
        EXPECT_TRUE(QTest::qWaitForWindowActive(shown));
        return *shown;
    }

    static void click(WelcomeWindow& welcome, const QString& label)
    {
        for (QPushButton* button : welcome.findChildren<QPushButton*>()) {
            if (button->text().remove(u'&') == label) {
                button->click();
                QCoreApplication::processEvents();
                return;
            }
        }
        FAIL() << qPrintable(label);
    }

    bool isClosed() const
    {
        return QTest::qWaitFor([this] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return !Shell::of(*controller.windows().back()).welcomeWindow();
        });
    }
};

TEST_F(WelcomeTest, listsRecentFilesAndOpensThem)
{
    open(write("first.txt", "one")).close();
    const QString gone = write("gone.txt", "two");
    DocumentWindow& window = open(gone);
    choose(window, u"File/New"_s);
    DocumentWindow& fresh = *controller.windows().back();
    window.close();
    QFile::remove(gone);

    WelcomeWindow& shown = welcome(fresh);
    QListWidget& list = shown.recentFiles();
    ASSERT_EQ(list.count(), 1) << "the other one is gone";
    EXPECT_EQ(list.item(0)->text(), u"first.txt — "_s + QFileInfo(gone).path());
    list.setFocus();
    QSignalSpy opened(&controller, &DocumentController::windowOpened);
    QTest::keyClick(&list, Qt::Key_Return);
    ASSERT_TRUE(opened.count() == 1 || opened.wait(5000));
    EXPECT_TRUE(isClosed());
    EXPECT_EQ(textOf(*controller.windows().back()), u"one"_s);
}

TEST_F(WelcomeTest, comesAtTheFirstStartAndThenOnlyWhenWanted)
{
    const auto comes = [this] {
        DocumentWindow* window = controller.newDocument();
        Shell::of(*controller.windows().back()).welcomeAtStart(*window);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
        QTest::qWait(50);
        WelcomeWindow* shown = Shell::of(*controller.windows().back()).welcomeWindow();
        const bool came = shown && shown->isVisible();
        if (shown)
            delete shown;
        return came;
    };
    EXPECT_TRUE(comes());
    EXPECT_FALSE(comes());
    auto& box = *welcome(*controller.windows().back()).findChild<QCheckBox*>();
    EXPECT_FALSE(box.isChecked());
    box.click();
    click(*Shell::of(*controller.windows().back()).welcomeWindow(), u"New Document"_s);
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(defaults.value(keys::showWelcome));
    EXPECT_TRUE(comes());
}

TEST_F(WelcomeTest, aTemplateMakesANewDocumentOfItsKind)
{
    const QString templates = folders.applicationSupport + u"/Templates"_s;
    QDir().mkpath(templates + u"/web/deep"_s);
    const auto put = [&](const QString& name, const QByteArray& bytes) {
        QFile file(templates + name);
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    };
    put(u"/web/page & more.html"_s, "<p>\r\n\xe9 caf\xe9 r\xe9sum\xe9</p>\r\n");
    put(u"/zeros.dat"_s, QByteArray(3000, '\0') + "\xff\x01\x02");
    ASSERT_TRUE(QFile::link(templates, templates + u"/web/loop"_s));
    DocumentWindow& window = openNew();
    choose(window, u"File/New from Template/web/page  more.html"_s);
    ASSERT_EQ(controller.windows().size(), 1U) << "the untouched document made room";
    DocumentWindow& made = *controller.windows().back();
    const Document& document = made.document();
    EXPECT_EQ(textOf(made), u"<p>\r\né café résumé</p>\r\n"_s);
    EXPECT_EQ(document.path(), QString());
    EXPECT_TRUE(document.displayName().startsWith(u"Untitled"));
    EXPECT_EQ(document.record().lbFormat, 3);
    EXPECT_TRUE(document.record().encoding == StringEncoding::windowsLatin1 ||
                document.record().encoding == StringEncoding::isoLatin1);
    EXPECT_TRUE(made.document().record().canUsePreview);
    EXPECT_EQ(made.document().syntaxColouring().definition()->title(), u"HTML"_s);
    EXPECT_FALSE(document.isDocumentEdited());

    choose(made, u"File/New from Template/zeros.dat"_s);
    EXPECT_EQ(questions.told.size(), 1);
    EXPECT_EQ(controller.windows().size(), 1U);

    put(u"/notes.unheardof"_s, "text");
    choose(made, u"File/New from Template/notes.unheardof"_s);
    ASSERT_EQ(controller.windows().size(), 2U);
    Document& plain = controller.windows().back()->document();
    EXPECT_EQ(plain.completeString().string(), u"text"_s);
    EXPECT_EQ(plain.record().definitionTitle, QString(Definition::plainText));
    EXPECT_EQ(plain.syntaxColouring().definition()->title(), QString(Definition::plainText));

    questions.savePath = templates + u"/mine.html"_s;
    choose(made, u"File/New from Template/Save as Template…"_s);
    waitUntilIdle(made);
    EXPECT_EQ(bytesOf(questions.savePath).left(6), "<p>\r\n\xe9");
    EXPECT_EQ(document.path(), QString());
    EXPECT_TRUE(command(made, u"File/New from Template/mine.html"_s));
}

TEST_F(WelcomeTest, whatIsWrittenOnTheTintedGroundCanBeRead)
{
    const QColor colours[]{Qt::black, Qt::white, QColor(0xfd, 0xf6, 0xe3), QColor(0x30, 0x30, 0x30),
                           QColor(0xef, 0xef, 0xef)};
    for (const QColor& theme : colours) {
        const std::pair<QColor, QColor> desktops[]{{QColor(0xef, 0xef, 0xef), Qt::black},
                                                   {QColor(0x31, 0x36, 0x3b), Qt::white}};
        for (const auto& [ground, ink] : desktops) {
            const QColor tinted = TitleBarDecoration::tint(ground, theme, ink);
            EXPECT_GE(contrast(tinted, ink), 4.5) << qPrintable(theme.name());
            EXPECT_EQ(tinted.rgb() == ground.rgb(), theme == ground) << qPrintable(theme.name());
        }
    }
}

} // namespace
} // namespace quillory::test
