#include "PreviewFixture.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWebEngineHistory>
#include <QWebEngineView>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

class PreviewWindowTest : public PreviewFixture
{
protected:
    void SetUp() override { show(); }

    bool titleBecomes(const QString& title) const
    {
        const bool became =
            QTest::qWaitFor([&] { return window.windowTitle() == title; }, patience);
        EXPECT_EQ(window.windowTitle().toStdString(), title.toStdString());
        return became;
    }

    /// Hands every dialog of type \a Dialog that opens to \a answer.
    template<class Dialog, class Answer>
    auto answering(Answer answer)
    {
        auto timer = std::make_unique<QTimer>();
        QObject::connect(timer.get(), &QTimer::timeout, timer.get(), [answer] {
            if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget()))
                answer(*dialog);
        });
        timer->start(20);
        return timer;
    }

    void press(const QString& button)
    {
        for (QToolButton* one : window.findChildren<QToolButton*>()) {
            if (one->accessibleName() == button)
                QTest::mouseClick(one, Qt::LeftButton);
        }
    }

    void click(const QString& element)
    {
        script(u"document.querySelector('%1').scrollIntoView()"_s.arg(element));
        const QString place =
            u"document.querySelector('%1').getBoundingClientRect()"_s.arg(element);
        const QPoint inside(script(place + u".x"_s).toInt() + 4,
                            script(place + u".y"_s).toInt() + 4);
        QTest::mouseClick(window.view().focusProxy(), Qt::LeftButton, {}, inside);
    }
};

TEST_F(PreviewWindowTest, LinksLeadOnInTheSameWindow)
{
    write(u"second.html"_s, "<title>second</title><a href=page.html target=_blank>x</a>");
    EXPECT_EQ(window.windowTitle(), u"Preview"_s);
    load("<p>without a title</p>");
    EXPECT_TRUE(titleBecomes(u"Preview"_s));
    load("<title>first</title><a href=second.html>x</a>");
    ASSERT_TRUE(titleBecomes(u"first"_s));
    EXPECT_FALSE(window.page().history()->canGoBack());

    click(u"a"_s); // which pages that a script left would not lead back to
    ASSERT_TRUE(titleBecomes(u"second"_s));
    EXPECT_TRUE(messages.last()[u"canGoBack"_s].toBool());
    EXPECT_FALSE(messages.last()[u"canGoNext"_s].toBool());
    press(u"Back (Alt+Left)"_s);
    ASSERT_TRUE(titleBecomes(u"first"_s));
    EXPECT_TRUE(messages.last()[u"canGoNext"_s].toBool());

    const qsizetype windows = QApplication::topLevelWidgets().size();
    script(u"window.open('second.html')"_s);
    ASSERT_TRUE(titleBecomes(u"second"_s));
    script(u"document.querySelector('a').click()"_s);
    ASSERT_TRUE(titleBecomes(u"first"_s));
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);

    script(u"location = 'second.html'"_s);
    ASSERT_TRUE(titleBecomes(u"second"_s));
    load("<title>typed on</title>", false);
    EXPECT_TRUE(titleBecomes(u"typed on"_s));
}

TEST_F(PreviewWindowTest, AFreshTextStaysWhereItWasScrolledTo)
{
    const QByteArray lines = QByteArray("<p>line</p>").repeated(500);
    load("<title>one</title>" + lines);
    script(u"window.scrollTo(0, 5000)"_s);
    ASSERT_TRUE(becomes(u"window.scrollY === 5000"_s));
    const int steps = script(u"history.length"_s).toInt();
    for (int round = 0; round < 3; ++round) {
        load("<title>two</title>" + lines + "<p>more</p>", false);
        EXPECT_TRUE(becomes(u"window.scrollY === 5000"_s)) << script(u"window.scrollY"_s).toInt();
    }
    EXPECT_EQ(script(u"history.length"_s).toInt(), steps);
    load("<title>three</title><p>short</p>", false);
    EXPECT_TRUE(becomes(u"window.scrollY === 0"_s));
}

TEST_F(PreviewWindowTest, ScriptsShowPanels)
{
    load("<p>text</p>");
    QStringList seen;
    QMessageBox::StandardButton answer = QMessageBox::Cancel;
    const auto timer = answering<QMessageBox>([&](QMessageBox& box) {
        seen += box.text() + u'|' + box.informativeText() + u'|' +
                QString::number(box.buttons().size());
        box.button(box.button(answer) ? answer : QMessageBox::Ok)->click();
    });
    script(u"alert('a <b>bold</b>\\nmessage')"_s);
    EXPECT_FALSE(script(u"confirm('sure?')"_s).toBool());
    answer = QMessageBox::Ok;
    EXPECT_TRUE(script(u"confirm('sure?')"_s).toBool());
    EXPECT_EQ(seen, QStringList({u"JavaScript|a &lt;b&gt;bold&lt;/b&gt;<br>message|1"_s,
                                 u"JavaScript|sure?|2"_s, u"JavaScript|sure?|2"_s}));
    // A page cannot keep the user from going on.
    seen.clear();
    script(u"for (let i = 0; i < 1000; ++i) alert(i)"_s);
    EXPECT_LE(seen.size(), PreviewPage::mostDialogs);
    load("<p>text</p>");
    timer->stop();
    QTimer::singleShot(300, &window, [this] { window.receive({{u"do"_s, u"hide"_s}}); });
    script(u"while (confirm('stay?') || window.once === undefined) window.once = 1"_s);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(PreviewWindowTest, FileInputsAndDownloadsAskTheUser)
{
    const QString chosen = write(u"chosen.txt"_s, "chosen text");
    load("<input type=file style='width:300px;height:60px'><p>text</p>");
    int asked = 0;
    const auto timer = answering<QFileDialog>([&](QFileDialog& dialog) {
        ++asked;
        if (dialog.acceptMode() == QFileDialog::AcceptSave || asked == 1) {
            dialog.reject();
        } else {
            dialog.selectFile(chosen);
            dialog.QDialog::done(QDialog::Accepted);
        }
    });
    click(u"input"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked == 1; }, patience));
    EXPECT_EQ(script(u"document.querySelector('input').files.length"_s).toInt(), 0);
    // The page takes no click before it has heard the end of the first question.
    for (int tries = 0; asked < 2 && tries < 10; ++tries) {
        click(u"input"_s);
        (void)QTest::qWaitFor([&] { return asked == 2; }, 1000);
    }
    EXPECT_TRUE(becomes(u"document.querySelector('input').files.length === 1"_s));
    EXPECT_EQ(script(u"document.querySelector('input').files[0].name"_s).toString(),
              u"chosen.txt"_s);

    const int before = asked;
    script(u"{ const a = document.createElement('a'); a.href = 'data:text/plain,abc'; "
           "a.download = 'abc.txt'; a.click() }"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked > before; }, patience));
    EXPECT_EQ(window.page().url(), documentAddress());

    script(u"{ const a = document.createElement('a'); a.href = 'data:text/plain,abc'; "
           "a.download = 'abc.txt'; setInterval(() => a.click(), 20) }"_s);
    pass(4000);
    EXPECT_LE(asked, PreviewPage::mostDialogs + 1);
}

TEST_F(PreviewWindowTest, TheInspectorIsForThoseWhoSwitchItOn)
{
    load("<p>text</p>");
    const auto inspectors = [] {
        const QWidgetList all = QApplication::topLevelWidgets();
        return std::count_if(all.begin(), all.end(), [](const QWidget* widget) {
            return widget->isVisible() && qobject_cast<const QWebEngineView*>(widget);
        });
    };
    QTest::keyClick(&window, Qt::Key_F12);
    EXPECT_EQ(inspectors(), 0);
    window.receive({{u"do"_s, u"inspect"_s}, {u"value"_s, true}});
    QTest::keyClick(&window, Qt::Key_F12);
    EXPECT_EQ(inspectors(), 1);
    window.receive({{u"do"_s, u"inspect"_s}, {u"value"_s, false}});
    EXPECT_EQ(inspectors(), 0);
}

TEST_F(PreviewWindowTest, APageWithoutEndDoesNotHoldUpTheNextText)
{
    load("<title>first</title><script>setTimeout(() => { while (true); }, 2000)</script>");
    pass(2500);
    send("<title>lost</title>");
    ASSERT_TRUE(QTest::qWaitFor([&] { return answer(u"End Page"_s); }, patience));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return window.strip().text().contains(u"ended"_s); }, patience));
    load("<title>second</title>", false);
    EXPECT_TRUE(titleBecomes(u"second"_s));
    EXPECT_EQ(window.strip().text(), QString());
}

class DarkPreviewTest : public PreviewFixture
{
protected:
    DarkPreviewTest() : PreviewFixture(Look::Dark) {}
};

TEST_F(DarkPreviewTest, PagesFollowTheDesktop)
{
    if (!hasLook)
        GTEST_SKIP() << "the engine, which runs once in a process, was started with light pages";
    show();
    load("<p>text</p>");
    EXPECT_TRUE(script(u"matchMedia('(prefers-color-scheme: dark)').matches"_s).toBool());
}

} // namespace
} // namespace quillory::test
