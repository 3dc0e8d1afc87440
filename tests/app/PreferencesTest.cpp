#include "PreferencesFixture.h"

#include "../view/EventLoopWatchdog.h"

#include "app/EditingAids.h"
#include "app/PrintFlow.h"
#include "app/SettingsPopover.h"
#include "app/SpellingAids.h"
#include "app/ViewAppearance.h"
#include "document/Document.h"
#include "editing/TypewriterScroll.h"
#include "view/TextCompletion.h"
#include "view/TextViewWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFontComboBox>
#include <QFontDatabase>
#include <QFontDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStyleHints>
#include <QWindow>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

const QString source = u"// helo\nlet a = 'one\ntwo';\nABC = 1;\n"_s;

class PreferencesTest : public PreferencesFixture
{
protected:
    PreferencesTest()
    {
        QDir(folders.applicationSupport).mkpath(u"Definitions"_s);
        write("support/Definitions/Lab.plist",
              "{title = Lab; extensions = (lab); keywords = (let); firstString = \"'\";"
              "singleLineComment = \"//\"; types = (abc); keywordsCaseSensitive = NO; "
              "autocompleteWords = (abcdef);}");
        write("support/Replacements.plist", "{omw = \"on my way\";}");
        defaults.setValue(keys::dontAsk, true);
    }

    DocumentWindow& openSource(const char* name = "a.lab")
    {
        return open(write(name, source.toUtf8()));
    }

    /// The text after \a keys were pressed at \a offset; it is then as it was.
    static QString after(DocumentWindow& window, TextOffset offset, const QStringList& keys)
    {
        const QString before = textOf(window);
        window.document().textView().setSelectedRange({offset, 0});
        press(window, keys);
        const QString text = textOf(window);
        window.document().textStorage().replaceCharactersInRange(
            window.document().completeString().range(), before);
        return text;
    }

    static std::optional<Colour> colourOf(DocumentWindow& window, const QString& word)
    {
        const auto at = TextOffset(textOf(window).indexOf(word));
        return window.document().overlay().attributesAt(at).foreground;
    }

    QString footer(DocumentWindow& window) const
    {
        return printJob(window.document(), defaults).footer.text(2, 12);
    }
};

/// What a switch of the preferences does to a window.
struct Switch
{
    QString label;
    const DefaultsKey<bool>& key;
    bool isInverted;
    std::function<bool(DocumentWindow&)> works;
};

/// Each is clicked on and off, written from outside, and tried in two windows.
TEST_F(PreferencesTest, everySwitchIsStoredAndWorksInEveryWindow)
{
    const std::vector<Switch> switches{
        {u"Wrap lines at the edge of the window"_s, keys::wrapLines, false,
         [](DocumentWindow& w) { return w.view().wrapsLines(); }},
        {u"Highlight the lines of the selection"_s, keys::highlight, false,
         [](DocumentWindow& w) { return w.view().overlay().lineBand().has_value(); }},
        {u"Colour strings that go over several lines"_s, keys::colourMultiLineStrings, false,
         [](DocumentWindow& w) { return colourOf(w, u"two"_s).has_value(); }},
        {u"Colour words of all kinds as keywords"_s, keys::colourAutocompleteWordsAsKeywords, false,
         [](DocumentWindow& w) { return colourOf(w, u"ABC"_s) == colourOf(w, u"let"_s); }},
        {u"Indent new lines like the line before"_s, keys::indentNewLinesBraces, false,
         [](DocumentWindow& w) {
             return after(w, 0, {u"'  x'"_s, u"Return"_s}).startsWith(u"  x\n  //");
         }},
        {u"Close brackets when they are opened"_s, keys::insertClosingParenthesisandBrace, false,
         [](DocumentWindow& w) { return after(w, 0, {u"'('"_s}).startsWith(u"()"); }},
        {u"Replace shortcuts by the texts of your list"_s, keys::textReplacement, false,
         [](DocumentWindow& w) { return after(w, 0, {u"'omw '"_s}).startsWith(u"on my way "); }},
        {u"Keep typing at the same height of the window"_s, keys::constrainScroll, false,
         [](DocumentWindow& w) {
             w.document().textStorage().replaceCharactersInRange({}, QString(500, u'\n'));
             w.goToOffset(250);
             w.view().scrollBy(0, 40);
             press(w, {u"'x'"_s});
             const int y = w.view().caretRect().y();
             w.document().textStorage().replaceCharactersInRange({0, 501}, QString());
             return y == anchorHeight(w.view().viewport()->height());
         }},
        {u"Offer completions when typing pauses"_s, keys::showCompletions, false,
         [](DocumentWindow& w) {
             w.activateWindow();
             w.document().textView().setSelectedRange({w.document().completeString().length(), 0});
             press(w, {u"'ab'"_s});
             const bool isOpen =
                 QTest::qWaitFor([&] { return w.aids().completion().isOpen(); }, 1000);
             press(w, {u"Escape"_s, u"Backspace"_s, u"Backspace"_s});
             return isOpen;
         }},
        {u"Check spelling while typing"_s, keys::checkSpelling, false,
         [](DocumentWindow& w) { return w.spelling().page().isEnabled(); }},
        {u"Keep the spaces right when whole words are cut and pasted"_s, keys::smartCopy, false,
         [](DocumentWindow& w) {
             QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 10);
             w.document().textStorage().replaceCharactersInRange({}, u"one two three\n");
             QCoreApplication::processEvents();
             const QPoint point = w.view().caretRectAt(5).center() + QPoint(3, 0);
             QTest::mouseClick(w.view().viewport(), Qt::LeftButton, {}, point);
             QTest::mouseDClick(w.view().viewport(), Qt::LeftButton, {}, point);
             press(w, {u"Delete"_s});
             const bool isSmart = textOf(w).startsWith(u"one three");
             w.document().textStorage().replaceCharactersInRange({0, isSmart ? 10 : 11}, QString());
             return isSmart;
         }},
        {u"Save by itself when typing pauses"_s, keys::autosaveInPlace, false,
         [](DocumentWindow& w) {
             press(w, {u"Ctrl+Home"_s, u"'x'"_s});
             QEvent left(QEvent::WindowDeactivate);
             QApplication::sendEvent(&w, &left);
             waitUntilIdle(w);
             const bool isSaved = !w.document().isDocumentEdited();
             w.document().textStorage().replaceCharactersInRange({0, 1}, QString());
             return isSaved;
         }},
        {u"Keep the width of the window"_s, keys::proposedSize, false,
         [](DocumentWindow& w) {
             w.toggleFullScreen();
             QCoreApplication::processEvents();
             const bool isNarrow = w.centralWidget()->layout()->contentsMargins().left() > 0;
             w.toggleFullScreen();
             QCoreApplication::processEvents();
             EXPECT_EQ(w.centralWidget()->layout()->contentsMargins().left(), 0);
             return isNarrow;
         }},
        {u"Offer the inspector for web pages"_s, keys::enableWebInspector, false,
         [this](DocumentWindow&) { return defaults.value(keys::webKitDeveloperExtras); }},
        {u"Ask for language, encoding and line breaks"_s, keys::dontAsk, true,
         [this](DocumentWindow&) {
             DocumentWindow& fresh = openNew();
             const bool asks = QTest::qWaitFor(
                 [&] {
                     const auto* popover = fresh.findChild<SettingsPopover*>();
                     return popover && popover->isVisible();
                 },
                 800);
             fresh.close();
             return asks;
         }},
    };
    DocumentWindow& first = openSource();
    DocumentWindow& second = openSource("b.lab");
    PreferencesWindow& window = preferences(second);
    for (const Switch& row : switches) {
        SCOPED_TRACE(row.label.toStdString());
        auto& box = button(window, row.label);
        for (const bool on : {true, false}) {
            EXPECT_EQ(box.isChecked(), !on);
            click(box);
            EXPECT_TRUE(defaults.isWritten(row.key));
            EXPECT_EQ(defaults.value(row.key), on != row.isInverted);
            for (DocumentWindow* document : {&first, &second})
                EXPECT_EQ(row.works(*document), on);
        }
        defaults.setValue(row.key, !row.isInverted);
        EXPECT_TRUE(box.isChecked()) << "another window wrote it";
        defaults.remove(row.key);
        EXPECT_EQ(box.isChecked(), row.isInverted);
        notifications.post(notifications::preferencesDidChange);
    }
    EXPECT_EQ(textOf(first), source);
}

TEST_F(PreferencesTest, theFooterIsMadeInThePrintingPane)
{
    DocumentWindow& document = openSource();
    PreferencesWindow& window = preferences(document);
    const auto& sample = control<QLabel>(window, u"Sample"_s);
    const auto expectFooter = [&](const QString& text) {
        EXPECT_EQ(footer(document), text);
        EXPECT_EQ(sample.text(), text);
    };
    expectFooter({});
    auto& title = control<QLineEdit>(window, u"Title"_s);
    EXPECT_FALSE(title.isEnabled());
    click(button(window, u"Title:"_s));
    expectFooter(u" | "_s); // a text that is empty, not one that is missing
    QTest::keyClicks(&title, u"Notes, 2026"_s);
    click(button(window, u"Author:"_s));
    QTest::keyClicks(&control<QLineEdit>(window, u"Author"_s), u"Ann"_s);
    expectFooter(u"Notes, 2026 | Ann | "_s);

    click(button(window, u"Page numbers:"_s));
    EXPECT_EQ(defaults.value(keys::prefsPrintNumbers), 1);
    auto& style = control<QComboBox>(window, u"Page numbers"_s);
    const QStringList expected{u"2"_s, u"-- 2 --"_s, u"Page 2"_s, u"Page 2 of 12"_s};
    for (int i = 0; i < expected.size(); ++i) {
        QTest::keyClick(&style, i == 0 ? Qt::Key_Home : Qt::Key_Down);
        expectFooter(u"Notes, 2026 | Ann | "_s + expected[i]);
    }
    click(button(window, u"Page numbers:"_s));
    EXPECT_EQ(defaults.value(keys::prefsPrintNumbers), 0);
    EXPECT_FALSE(style.isEnabled());
    defaults.setValue(keys::prefsPrintNumbers, 2); // by hand: anything but 0 is a yes
    EXPECT_TRUE(button(window, u"Page numbers:"_s).isChecked());

    click(button(window, u"No footer on the first page"_s));
    EXPECT_FALSE(printJob(document.document(), defaults).footer.isShownOn(1));

    auto& font = control<QFontComboBox>(window, u"Font"_s);
    auto& other = control<QFontComboBox>(window, u"Use this font instead"_s);
    ASSERT_GT(font.count(), 1);
    EXPECT_FALSE(other.isEnabled());
    for (auto* fonts : {&font, &other}) {
        if (fonts == &other)
            click(button(window, u"Use this font instead:"_s));
        QTest::keyClick(fonts, Qt::Key_Home);
        QTest::keyClick(fonts, fonts == &font ? Qt::Key_Down : Qt::Key_End);
        EXPECT_EQ(printJob(document.document(), defaults).footer.fontName,
                  fonts->currentFont().family());
        EXPECT_EQ(sample.font().family(), fonts->currentFont().family());
    }
    EXPECT_NE(defaults.value(keys::plainFontName), defaults.value(keys::convertedFontName));
}

TEST_F(PreferencesTest, themesAreChosenInTheListAndInTheMenus)
{
    QDir(folders.applicationSupport).mkpath(u"Themes/More"_s);
    DocumentWindow& first = openSource();
    write("support/Themes/More/Broken.plist", "{");
    write("support/Themes/More/Odd.plist", "{background = {R = 10; G = 20; B = 30; A = 1;};}");
    write("support/Themes/None.txt", "{}");
    DocumentWindow& second = openSource("b.lab");
    PreferencesWindow& window = preferences(second);
    auto& list = *window.findChild<QListView*>(u"themes"_s);
    QStringList names;
    for (int i = 0; i < list.model()->rowCount(); ++i)
        names += list.model()->index(i, 0).data().toString();
    EXPECT_EQ(names, (QStringList{u"Default"_s, u"Discreet"_s, u"Fluffish"_s, u"Insomniac"_s,
                                  u"Odd"_s, u"Solarized Light"_s}));
    EXPECT_EQ(controller.preferences().themesArray().size(), 6U);
    EXPECT_EQ(list.currentIndex().row(), 0);

    const auto odd = list.visualRect(list.model()->index(4, 0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, odd.center());
    EXPECT_EQ(defaults.value(keys::selectedTheme), 4);
    for (DocumentWindow* document : {&first, &second})
        EXPECT_EQ(document->view().colours().background, QColor(10, 20, 30));
    QTest::keyClick(&list, Qt::Key_Up);
    EXPECT_EQ(defaults.value(keys::selectedTheme), 3);

    QSignalSpy posted(&notifications, &NotificationCenter::posted);
    choose(first, u"View/Theme/Fluffish"_s);
    EXPECT_EQ(list.currentIndex().row(), 2);
    EXPECT_EQ(posted.count(), 1) << "what the list shows is no choice";
    defaults.setValue(keys::selectedTheme, 77);
    controller.preferences().sendPrefsNotification();
    EXPECT_EQ(defaults.value(keys::selectedTheme), 77) << "no row is no choice either";
    EXPECT_FALSE(list.currentIndex().isValid());
}

TEST_F(PreferencesTest, fontAndSizeReachEveryWindow)
{
    DocumentWindow& first = openSource();
    DocumentWindow& second = openSource("b.lab");
    PreferencesWindow& window = preferences(second);
    auto& fonts = *window.findChild<QComboBox*>(u"font"_s);
    auto& size = *window.findChild<QSpinBox*>(u"fontSize"_s);
    EXPECT_EQ(fonts.currentIndex(), 0);
    EXPECT_EQ(first.view().textFont().pointSize(), 11);
    QTest::keyClick(&size, Qt::Key_Up);
    EXPECT_EQ(defaults.value(keys::fontSize), 1);
    for (DocumentWindow* document : {&first, &second})
        EXPECT_EQ(document->view().textFont().pointSize(), 12);
    defaults.setValue(keys::fontSize, 12);
    EXPECT_EQ(size.value(), 23);
    QTest::keyClick(&size, Qt::Key_Up);
    EXPECT_EQ(defaults.value(keys::fontSize), 12);
    defaults.setValue(keys::fontSize, 13); // as good as none
    EXPECT_EQ(size.value(), 11);
    EXPECT_EQ(ViewAppearance::fontOf(defaults).pointSize(), 11);

    const QString family = QFontDatabase::families().last();
    QElapsedTimer clock;
    clock.start();
    QSignalSpy posted(&notifications, &NotificationCenter::posted);
    controller.preferences().changeFont(QFont(family, 15));
    EXPECT_EQ(defaults.value(keys::font), 4);
    EXPECT_EQ(defaults.value(keys::customFontName), family);
    EXPECT_EQ(fonts.currentIndex(), 4);
    EXPECT_EQ(fonts.currentText(), family);
    EXPECT_EQ(size.value(), 15);
    EXPECT_EQ(posted.count(), 0);
    ASSERT_TRUE(posted.wait(2000));
    EXPECT_GE(clock.elapsed(), 95);
    for (DocumentWindow* document : {&first, &second})
        EXPECT_EQ(document->view().textFont().family(), family);

    fonts.setFocus();
    QTest::keyClick(&fonts, Qt::Key_Home);
    EXPECT_EQ(defaults.value(keys::font), 0);
    EXPECT_NE(first.view().textFont().family(), family);
    EXPECT_EQ(defaults.value(keys::customFontName), family);
    controller.preferences().changeFont(QFont(family, 72));
    EXPECT_EQ(defaults.value(keys::fontSize), 12);
}

TEST_F(PreferencesTest, givingUpTheFontDialogBringsTheFontBack)
{
    DocumentWindow& document = openSource();
    for (const bool accepts : {false, true}) {
        defaults.setValue(keys::font, 2);
        defaults.setValue(keys::fontSize, 3);
        choose(document, u"Format/Font…"_s);
        auto* dialog = document.findChild<QFontDialog*>();
        ASSERT_TRUE(dialog);
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        EXPECT_EQ(defaults.value(keys::font), 2) << "to look is not to choose";
        dialog->setCurrentFont(
            QFont(QFontDatabase::systemFont(QFontDatabase::FixedFont).family(), 18));
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return document.view().textFont().pointSize() == 18; }, 2000));
        accepts ? dialog->accept() : dialog->reject();
        EXPECT_EQ(defaults.value(keys::font), accepts ? 4 : 2);
        QTest::qWait(150);
        EXPECT_EQ(document.view().textFont().pointSize(), accepts ? 18 : 14);
    }

    defaults.remove(keys::customFontName);
    choose(document, u"Format/Font…"_s);
    auto* dialog = document.findChild<QFontDialog*>();
    dialog->setCurrentFont(QFont(dialog->currentFont().family(), 20));
    EXPECT_TRUE(defaults.isWritten(keys::customFontName));
    dialog->reject();
    EXPECT_FALSE(defaults.isWritten(keys::customFontName)) << "what was not chosen is not stored";
}

TEST_F(PreferencesTest, theFolderIsChosenAndForgotten)
{
    PreferencesWindow& window = preferences(openSource());
    auto& path = *control<QWidget>(window, u"Dropbox folder"_s).findChild<QLineEdit*>();
    auto& remove = button(window, u"Remove"_s);
    EXPECT_FALSE(remove.isEnabled());
    auto* choose = qobject_cast<QPushButton*>(path.parentWidget()->focusProxy());
    ASSERT_TRUE(choose);
    click(*choose); // and Cancel
    EXPECT_FALSE(defaults.isWritten(keys::dropboxPath));
    questions.folder = folder.filePath(u"my box"_s);
    click(*choose);
    EXPECT_EQ(defaults.value(keys::dropboxPath), QUrl::fromLocalFile(questions.folder));
    EXPECT_EQ(path.text(), questions.folder);
    click(remove);
    EXPECT_FALSE(defaults.isWritten(keys::dropboxPath));
    EXPECT_FALSE(remove.isEnabled());
    EXPECT_EQ(path.text(), u"None is chosen");
}

TEST_F(PreferencesTest, theWindowIsOneOfTheDesktop)
{
    DocumentWindow& document = openSource();
    PreferencesWindow& window = preferences(document);
    EXPECT_EQ(&window, &preferences(document)) << "there is one";
    auto& panes = *window.findChild<QTabWidget*>();
    QTest::keySequence(&window, QKeySequence(u"Alt+P"_s));
    EXPECT_EQ(panes.currentIndex(), 2);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(UserDefaults(defaults.path()).value(keys::selectedTheme), 0);

    DocumentController again(environment, questions, state);
    again.preferences().showWindow(document);
    EXPECT_EQ(again.preferences().window()->findChild<QTabWidget*>()->currentIndex(), 2);

    QSignalSpy posted(&notifications, &NotificationCenter::posted);
    PreferencesWindow& shown = preferences(document);
    Q_EMIT shown.windowHandle()->screenChanged(shown.screen());
    ASSERT_EQ(posted.count(), 1);
    EXPECT_EQ(posted[0][0].toString(), notifications::windowDidChangeScreen);
}

/// In no pane do two controls share a key, nor one with the panes or the window's button.
TEST_F(PreferencesTest, everyControlHasANameAndAKeyOfItsOwn)
{
    PreferencesWindow& window = preferences(openSource());
    auto& panes = *window.findChild<QTabWidget*>();
    const auto mnemonic = [](const QString& text) { return QKeySequence::mnemonic(text); };
    QStringList shared;
    for (int i = 0; i < panes.count(); ++i)
        shared += mnemonic(panes.tabText(i)).toString();
    shared += u"Alt+C"_s; // Close
    for (int i = 0; i < panes.count(); ++i) {
        QStringList keys = shared;
        const auto note = [&](const QString& text) {
            if (const QKeySequence key = mnemonic(text); !key.isEmpty()) {
                EXPECT_FALSE(keys.contains(key.toString())) << text.toStdString();
                keys += key.toString();
            }
        };
        for (QLabel* label : panes.widget(i)->findChildren<QLabel*>()) {
            if (label->buddy())
                note(label->text());
        }
        for (QAbstractButton* button : panes.widget(i)->findChildren<QAbstractButton*>()) {
            note(button->text());
            const bool hasText =
                qobject_cast<QCheckBox*>(button) || qobject_cast<QPushButton*>(button);
            EXPECT_TRUE(!hasText || !mnemonic(button->text()).isEmpty())
                << button->text().toStdString();
        }
        for (QWidget* field : panes.widget(i)->findChildren<QWidget*>()) {
            const bool isField = qobject_cast<QComboBox*>(field) || qobject_cast<QSpinBox*>(field);
            EXPECT_TRUE(!isField || !field->accessibleName().isEmpty() ||
                        !field->parentWidget()->accessibleName().isEmpty())
                << field->metaObject()->className() << field->objectName().toStdString();
        }
    }
}

TEST_F(PreferencesTest, anotherSessionHasWhatThisOneChose)
{
    {
        PreferencesWindow& window = preferences(openSource());
        click(button(window, u"Wrap lines at the edge of the window"_s));
        auto& list = *window.findChild<QListView*>(u"themes"_s);
        QTest::keyClick(&list, Qt::Key_End);
        QTest::keyClick(window.findChild<QSpinBox*>(u"fontSize"_s), Qt::Key_Up);
        defaults.synchronize();
    }
    UserDefaults stored(defaults.path());
    const DocumentEnvironment next{folders, stored, notifications, disk, recovery};
    DocumentController session(next, questions, state);
    DocumentWindow& window = *session.newDocument();
    EXPECT_TRUE(window.view().wrapsLines());
    EXPECT_EQ(window.view().textFont().pointSize(), 12);
    session.preferences().showWindow(window);
    const auto& list = *session.preferences().window()->findChild<QListView*>(u"themes"_s);
    EXPECT_EQ(list.currentIndex().data().toString(), u"Solarized Light"_s);
}

/// Every change is made while a text of 100 MB is open, of many lines or of few.
TEST_F(PreferencesTest, changesCountAtOnceInLargeTextsToo)
{
    const QByteArray line = "let a = 'one' + abc; // and some more words to wrap\n";
    for (const bool longLines : {false, true}) {
        QByteArray bytes = line.repeated(int(100'000'000 / line.size()));
        if (longLines)
            bytes.replace("words to wrap\n", "words to wrap ");
        DocumentWindow& document = open(write("large.lab", bytes));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !document.document().isLoading(); }, 120'000));
        document.goToOffset(TextOffset(bytes.size() / 2));
        bytes.clear();
        PreferencesWindow& window = preferences(document);
        QTest::qWait(100);
        EventLoopWatchdog watchdog;
        for (const QString& label :
             {u"Wrap lines at the edge of the window"_s, u"Highlight the lines of the selection"_s,
              u"Colour strings that go over several lines"_s,
              u"Keep typing at the same height of the window"_s,
              u"Check spelling while typing"_s}) {
            auto& box = button(window, label);
            for (int i = 0; i < 2; ++i) {
                watchdog.watch(label.toUtf8().constData(), [&] {
                    click(box);
                    document.view().viewport()->repaint();
                });
                QTest::qWait(20);
            }
        }
        auto& size = *window.findChild<QSpinBox*>(u"fontSize"_s);
        auto& themes = *window.findChild<QListView*>(u"themes"_s);
        click(button(window, u"Wrap lines at the edge of the window"_s));
        for (int i = 0; i < 4; ++i) {
            watchdog.watch("another size", [&] {
                QTest::keyClick(&size, Qt::Key_Up);
                document.view().viewport()->repaint();
            });
            QTest::qWait(20);
            watchdog.watch("another theme", [&] {
                QTest::keyClick(&themes, Qt::Key_Down);
                document.view().viewport()->repaint();
            });
            QTest::qWait(20);
        }
        document.close();
    }
}

} // namespace
} // namespace quillory::test
