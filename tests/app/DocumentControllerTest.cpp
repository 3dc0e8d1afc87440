#include "AppFixture.h"

#include "app/SettingsPopover.h"
#include "document/Document.h"

#include <QDir>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace quillory::test {
namespace {

class DocumentControllerTest : public AppFixture
{};

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

TEST_F(DocumentControllerTest, raisesTheWindowOfAFileThatIsOpen)
{
    const QString file = write("a.txt", "one\ntwo\n");
    DocumentWindow& window = open(file);
    ASSERT_TRUE(QDir(folder.path()).mkdir(qs("sub")));
    controller.open({{folder.filePath(qs("sub/../a.txt")), TextPlace{2, 3}}});
    EXPECT_EQ(controller.windows().size(), 1u);
    EXPECT_EQ(window.document().textView().selectedRange(), (TextRange{6, 0}));
}

TEST_F(DocumentControllerTest, replacesOnlyAnUntouchedDocument)
{
    const QString file = write("a.txt", "one\n");
    DocumentWindow& untouched = openNew();
    controller.open({{file, {}}}, &untouched);
    ASSERT_EQ(controller.windows().size(), 1u);
    EXPECT_EQ(controller.windows().front()->document().path(), file);

    DocumentWindow& touched = openNew();
    press(touched, {qs("'x'")});
    controller.open({{write("b.txt", "two\n"), {}}}, &touched);
    EXPECT_EQ(controller.windows().size(), 3u);
}

TEST_F(DocumentControllerTest, opensAFileThatDoesNotExistYet)
{
    controller.open({{path("fresh.txt"), {}}});
    ASSERT_EQ(controller.windows().size(), 1u);
    DocumentWindow& window = *controller.windows().front();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_EQ(window.windowTitle(), qs("fresh.txt[*] — Quillory"));
    EXPECT_FALSE(window.isWindowModified());
    press(window, {qs("'made'")});
    save(window);
    EXPECT_EQ(bytesOf(path("fresh.txt")), "made");
    EXPECT_EQ(questions.asked, QStringList());
}

TEST_F(DocumentControllerTest, doesNotReplaceAFileThatAppearedMeanwhile)
{
    controller.open({{path("fresh.txt"), {}}});
    DocumentWindow& window = *controller.windows().front();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    press(window, {qs("'mine'")});
    write("fresh.txt", "theirs");
    save(window);
    EXPECT_EQ(bytesOf(path("fresh.txt")), "theirs");
    EXPECT_TRUE(window.isWindowModified());
}

TEST_F(DocumentControllerTest, tellsWhatCannotBeOpened)
{
    const char* cases[]{"", "missing/a.txt"};
    for (const char* name : cases) {
        questions.told.clear();
        QSignalSpy finished(&controller, &DocumentController::finished);
        controller.open({{folder.filePath(qs(name)), {}}});
        ASSERT_TRUE(QTest::qWaitFor([&] { return !questions.told.isEmpty(); })) << name;
        EXPECT_TRUE(controller.hasFailed());
        EXPECT_GE(finished.count(), 1) << "without a window the program ends";
        EXPECT_TRUE(controller.windows().empty());
    }
}

TEST_F(DocumentControllerTest, readsALargeListAside)
{
    const QByteArray bytes = "<plist><array>" + QByteArray("<true/>\n").repeated(600'000) +
                             "</array></plist>\n<!-- a list is a list as a whole -->\n";
    const QString file = write("large.plist", bytes);
    controller.open({{file, TextPlace{600'000, 1}}});
    EXPECT_TRUE(controller.windows().empty()) << "it is still being read";
    controller.open({{file, {}}});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !controller.windows().empty(); }, 20'000));
    EXPECT_EQ(controller.windows().size(), 1u) << "it was asked for twice";
    DocumentWindow& window = *controller.windows().front();
    EXPECT_EQ(window.document().completeString().length(), bytes.size());
    EXPECT_EQ(window.document().textView().selectedRange().location, 14 + 8 * 599'999);
}

TEST_F(DocumentControllerTest, asksBeforeItClosesAnEditedDocument)
{
    struct
    {
        UserQuestions::BeforeClosing answer;
        bool diskFull;
        bool closes;
        const char* bytes;
    } const cases[]{
        {UserQuestions::BeforeClosing::Cancel, false, false, "old"},
        {UserQuestions::BeforeClosing::Save, true, false, "old"},
        {UserQuestions::BeforeClosing::Save, false, true, "xold"},
        {UserQuestions::BeforeClosing::Discard, false, true, "old"},
    };
    for (const auto& c : cases) {
        const QString file = write("a.txt", "old");
        const QPointer<DocumentWindow> window = &open(file);
        press(*window, {qs("'x'")});
        disk.full = c.diskFull;
        questions.beforeClosing = c.answer;
        questions.asked.clear();
        window->close();
        QCoreApplication::processEvents();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !window || !window->isBusy(); }, 20'000));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(questions.asked, QStringList{qs("save a.txt")});
        EXPECT_EQ(window.isNull(), c.closes) << int(c.answer);
        EXPECT_EQ(bytesOf(file), c.bytes);
        disk.full = false;
        if (window) {
            questions.beforeClosing = UserQuestions::BeforeClosing::Discard;
            window->close();
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
}

TEST_F(DocumentControllerTest, quitsDocumentByDocument)
{
    DocumentWindow& first = open(write("a.txt", "a"));
    DocumentWindow& second = open(write("b.txt", "b"));
    open(write("c.txt", "c"));
    press(first, {qs("'x'")});
    press(second, {qs("'y'")});
    QSignalSpy finished(&controller, &DocumentController::finished);
    controller.quit();
    EXPECT_EQ(questions.asked, QStringList{qs("save a.txt")});
    EXPECT_EQ(controller.windows().size(), 3u) << "the first Cancel keeps all";

    questions.beforeClosing = UserQuestions::BeforeClosing::Save;
    controller.quit();
    ASSERT_TRUE(QTest::qWaitFor([&] { return finished.count() > 0; }, 20'000));
    EXPECT_EQ(bytesOf(path("a.txt")), "xa");
    EXPECT_EQ(bytesOf(path("b.txt")), "yb");
    EXPECT_TRUE(controller.windows().empty());
}

TEST_F(DocumentControllerTest, remembersRecentFilesThatAreStillThere)
{
    for (int i = 0; i < 25; ++i) {
        DocumentWindow& window = open(write(qPrintable(qs("f%1").arg(i)), "x"));
        window.close();
    }
    EXPECT_EQ(controller.recentDocuments().size(), RecentDocuments::limit);
    EXPECT_EQ(controller.recentDocuments().front(), path("f24"));
    QFile::remove(path("f24"));
    open(path("f20")).close();
    EXPECT_EQ(controller.recentDocuments().front(), path("f20"));
    EXPECT_FALSE(controller.recentDocuments().contains(path("f24")));
    controller.clearRecentDocuments();
    EXPECT_TRUE(controller.recentDocuments().isEmpty());
}

TEST_F(DocumentControllerTest, showsTheSettingsOfANewDocumentWithoutTakingTheKeyboard)
{
    DocumentWindow& window = openNew();
    const auto popover = [&window] { return window.findChild<SettingsPopover*>(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return popover() && popover()->isVisible(); }));
    press(window, {qs("'typed'")});
    EXPECT_EQ(textOf(window), qs("typed"));
    EXPECT_FALSE(popover()->isVisible()) << "typing puts it away";

    DocumentWindow& opened = open(write("a.txt", "x"));
    QTest::qWait(500);
    EXPECT_FALSE(opened.findChild<SettingsPopover*>()) << "a file's form is known";
}

} // namespace
} // namespace quillory::test
