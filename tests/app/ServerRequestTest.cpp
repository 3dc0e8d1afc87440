#include "AppFixture.h"

#include "app/DialogQuestions.h"
#include "app/DocumentWindow.h"
#include "app/LongAlert.h"
#include "app/StatusLine.h"
#include "document/Document.h"

#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QToolButton>

namespace quillory {

namespace {

using namespace test;

class ServerRequestTest : public AppFixture
{
protected:
    /// Asks a server that says nothing by itself, and waits until it was asked.
    QTcpSocket* ask(DocumentWindow& window)
    {
        EXPECT_TRUE(server.isListening() || server.listen(QHostAddress::LocalHost));
        window.document().serverRequests().urlRequestWithURL(
            QStringLiteral("http://127.0.0.1:%1/").arg(server.serverPort()), {}, false);
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.hasPendingConnections(); }));
        return server.nextPendingConnection();
    }

    QTcpServer server;
};

TEST_F(ServerRequestTest, showsThatItWaitsAndThenTheAnswer)
{
    DocumentWindow& window = open(write("a.txt", "text"));
    QTcpSocket* socket = ask(window);
    EXPECT_EQ(window.statusLine().activityText(), u"Waiting for 127.0.0.1…"_qs);
    socket->write("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !questions.told.isEmpty(); }));
    EXPECT_EQ(questions.told, QStringList(u"Server Response hello"_qs));
    EXPECT_EQ(window.statusLine().activityText(), QString());
}

TEST_F(ServerRequestTest, canBeGivenUpByAButtonOrByClosing)
{
    DocumentWindow& window = open(write("a.txt", "text"));
    (void)ask(window);
    QToolButton* cancel = nullptr;
    for (auto* button : window.statusLine().findChildren<QToolButton*>()) {
        if (button->accessibleName() == u"Cancel")
            cancel = button;
    }
    ASSERT_TRUE(cancel && cancel->isVisible());
    QTest::mouseClick(cancel, Qt::LeftButton);
    EXPECT_FALSE(window.document().serverRequests().isRunning());
    EXPECT_FALSE(cancel->isVisible());

    (void)ask(window);
    window.close();
    QTest::qWait(50);
    EXPECT_EQ(questions.told, QStringList());
}

TEST_F(ServerRequestTest, anAnswerIsShownAsItStandsHoweverLong)
{
    DialogQuestions dialogs;
    QWidget window;
    dialogs.showAlert(&window, u"Server Response"_qs, u"<b>bold</b>"_qs);
    const auto* box = window.findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    for (const auto* label : box->findChildren<QLabel*>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();

    const QString answer = u"<b>line</b>\n"_qs.repeated(80'000);
    EXPECT_TRUE(isLongAlert(answer));
    dialogs.showAlert(&window, u"Server Response"_qs, answer);
    const auto* text = window.findChild<QPlainTextEdit*>();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->toPlainText(), answer);
    EXPECT_LT(text->window()->height(), 600);
}

} // namespace

} // namespace quillory
