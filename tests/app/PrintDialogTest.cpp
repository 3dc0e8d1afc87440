#include "PrintFixture.h"

#include "../support/EnvironmentVariable.h"
#include "../view/EventLoopWatchdog.h"

#include "app/ProgressBar.h"
#include "document/Document.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QLocalServer>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

/// Does something as soon as a widget is put away.
class OnHide : public QObject
{
public:
    explicit OnHide(std::function<void()> act) : m_act(std::move(act)) {}

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::Hide)
            m_act();
        return false;
    }

private:
    std::function<void()> m_act;
};

/// Goes through the toolkit's own dialog, with its entry for a file in the place of a printer.
class PrintDialogTest : public PrintFixture
{
protected:
    QPrintDialog& ask(DocumentWindow& window, const QString& file) const
    {
        choose(window, u"File/Print…"_s);
        QPrintDialog* dialog = nullptr;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return (dialog = window.findChild<QPrintDialog*>()) != nullptr; }, patience));
        auto* printers = part<QComboBox>(*dialog, "printers");
        for (int i = 0; i < printers->count(); ++i)
            if (printers->itemText(i).contains(u"PDF"_s))
                printers->setCurrentIndex(i);
        part<QLineEdit>(*dialog, "filename")->setText(file);
        return *dialog;
    }

    /// The dialog may ask on, which nobody would answer here.
    static void accept(QPrintDialog& dialog)
    {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                ADD_FAILURE() << box->text().toStdString();
                box->reject();
            }
        });
        timer.start(100);
        dialog.accept();
    }

    template<class Part>
    static Part* part(const QPrintDialog& dialog, const char* name)
    {
        auto* found = dialog.findChild<Part*>(QLatin1StringView(name));
        if (!found)
            qFatal("the dialog has no %s", name);
        return found;
    }

    static void choosePages(const QPrintDialog& dialog, int first, int last)
    {
        part<QRadioButton>(dialog, "printRange")->setChecked(true);
        part<QSpinBox>(dialog, "to")->setValue(last);
        part<QSpinBox>(dialog, "from")->setValue(first);
    }

    static void check(const QPrintDialog& dialog, const QString& text)
    {
        for (QCheckBox* box : dialog.findChildren<QCheckBox*>()) {
            if (box->text() != text)
                continue;
            EXPECT_FALSE(box->isChecked()) << "off unless asked for";
            box->setChecked(true);
            return;
        }
        FAIL() << "there is no option " << text.toStdString();
    }

    /// The rows that a file's pages hold, in order.
    QStringList printedRows() const
    {
        return pages().join(QString()).split(u'\n', Qt::SkipEmptyParts);
    }
};

TEST_F(PrintDialogTest, PrintsAllOfTheText)
{
    DocumentWindow& window = open(write("rows.txt", rows(200)));
    accept(ask(window, pdf));
    ASSERT_TRUE(isPrinted(window));
    const QStringList printed = printedRows();
    EXPECT_EQ(printed.size(), 200);
    EXPECT_EQ(printed.value(0).trimmed(), u"row 1"_s);
    EXPECT_EQ(printed.value(199).trimmed(), u"row 200"_s);
    EXPECT_EQ(fact(u"Title"_s), u"rows.txt"_s);
}

TEST_F(PrintDialogTest, PrintsThePagesAskedFor)
{
    DocumentWindow& window = open(write("rows.txt", rows(400)));
    accept(ask(window, pdf));
    ASSERT_TRUE(isPrinted(window));
    const QStringList all = pages();
    ASSERT_GT(all.size(), 4);

    QPrintDialog& dialog = ask(window, path("some.pdf"));
    choosePages(dialog, 2, 4);
    for (QCheckBox* box : dialog.findChildren<QCheckBox*>())
        box->setChecked(box->isChecked() || box->text() == u"Reverse"_s);
    accept(dialog);
    ASSERT_TRUE(isPrinted(window));
    QFile::remove(pdf);
    ASSERT_TRUE(QFile::rename(path("some.pdf"), pdf));
    EXPECT_EQ(pages(), QStringList({all[3], all[2], all[1]}));
    EXPECT_EQ(defaults.value(keys::previewPageInt), 2);
}

TEST_F(PrintDialogTest, TellsThatThereAreNoSuchPages)
{
    DocumentWindow& window = open(write("rows.txt", rows(4)));
    QPrintDialog& dialog = ask(window, pdf);
    choosePages(dialog, 2, 3);
    accept(dialog);
    ASSERT_TRUE(isPrinted(window));
    EXPECT_TRUE(message(window, MessageArea::Subject::Export).contains(u"1 page"_s))
        << message(window, MessageArea::Subject::Export).toStdString();
}

TEST_F(PrintDialogTest, PrintsTheSelectionWithNumbersOfItsLines)
{
    DocumentWindow& window = open(write("rows.txt", rows(200)));
    EXPECT_TRUE(part<QRadioButton>(ask(window, pdf), "printSelection")->isHidden());
    window.findChild<QPrintDialog*>()->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    const QString text = textOf(window);
    const TextRange selected =
        TextRange::between(text.indexOf(u"row 50\n"), text.indexOf(u"row 53\n"));
    window.document().textView().setSelectedRange(selected);
    QPrintDialog& dialog = ask(window, pdf);
    part<QRadioButton>(dialog, "printSelection")->setChecked(true);
    check(dialog, u"Line &numbers"_s);
    accept(dialog);
    ASSERT_TRUE(isPrinted(window));
    QStringList printed = printedRows();
    for (QString& row : printed)
        row = row.simplified();
    EXPECT_EQ(printed, QStringList({u"50 row 50"_s, u"51 row 51"_s, u"52 row 52"_s}));
}

TEST_F(PrintDialogTest, PrintsNothingWhenItIsCancelled)
{
    DocumentWindow& window = open(write("rows.txt", rows(4)));
    ask(window, pdf).reject();
    EXPECT_FALSE(window.printing().isPrinting());
    EXPECT_FALSE(QFile::exists(pdf));
    // And does not stand in the way of the next one.
    accept(ask(window, pdf));
    ASSERT_TRUE(isPrinted(window));
    EXPECT_TRUE(QFile::exists(pdf));
}

TEST_F(PrintDialogTest, LeavesAFileAsItWasWhenItIsGivenUp)
{
    DocumentWindow& window = open(write("rows.txt", rows(100'000)));
    QPrintDialog& dialog = ask(window, pdf);
    // What is typed behind the dialog is not printed, and the selection may be gone.
    window.document().textView().setSelectedRange({0, 50});
    write("out.pdf", "before");
    {
        OnHide onHide([&] { window.document().textView().insertText(u"x"_s); });
        dialog.installEventFilter(&onHide);
        dialog.printer()->setOutputFileName(pdf);
        dialog.QDialog::done(QDialog::Accepted);
    }
    ASSERT_TRUE(window.printing().isPrinting());
    auto* bar = window.findChild<ProgressBar*>();
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar->percent() > 0; }, patience));
    window.printing().cancel();
    ASSERT_TRUE(isPrinted(window));
    EXPECT_EQ(bytesOf(pdf), "before");
    EXPECT_EQ(message(window, MessageArea::Subject::Export), QString());
}

TEST_F(PrintDialogTest, TellsOfAPrinterThatFails)
{
    DocumentWindow& window = open(write("rows.txt", rows(4)));
    QPrintDialog& dialog = ask(window, pdf);
    accept(dialog);
    ASSERT_TRUE(isPrinted(window));
    EXPECT_TRUE(message(window, MessageArea::Subject::Export).isEmpty());

    QPrintDialog& other = ask(window, path("gone.pdf"));
    // The place goes between the dialog's own check and the first page.
    OnHide onHide(
        [&other, this] { other.printer()->setOutputFileName(path("no such folder/out.pdf")); });
    other.installEventFilter(&onHide);
    accept(other);
    ASSERT_TRUE(isPrinted(window));
    EXPECT_TRUE(message(window, MessageArea::Subject::Export).contains(u"was not written"_s))
        << message(window, MessageArea::Subject::Export).toStdString();
}

TEST_F(PrintDialogTest, WaitsForNoPrintServiceThatIsSilent)
{
    QLocalServer service;
    ASSERT_TRUE(service.listen(path("cups.sock")));
    const EnvironmentVariable server("CUPS_SERVER", path("cups.sock").toUtf8());
    DocumentWindow& window = open(write("rows.txt", rows(4)));
    {
        EventLoopWatchdog watchdog;
        choose(window, u"File/Print…"_s);
        press(window, {u"'x'"_s});
        EXPECT_TRUE(textOf(window).startsWith(u'x'));
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return !message(window, MessageArea::Subject::Export).isEmpty(); }, patience));
    }
    if (!service.hasPendingConnections())
        GTEST_SKIP() << "this Qt prints without a print service";
    EXPECT_TRUE(message(window, MessageArea::Subject::Export).contains(u"does not answer"_s));
    EXPECT_FALSE(window.findChild<QPrintDialog*>());
}

} // namespace
} // namespace quillory::test
