#include "app/PrintFlow.h"

#include "app/PrintPreview.h"
#include "app/PrintService.h"
#include "app/ProgressBar.h"
#include "app/UserQuestions.h"
#include "app/ViewAppearance.h"
#include "document/Document.h"
#include "foundation/Background.h"
#include "foundation/UserDefaults.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QTimer>
#include <QVBoxLayout>

namespace quillory {

namespace {

constexpr int settingsDelay = 300; ///< milliseconds of rest before the preview shows them

/// The page of the dialog with what it knows nothing of by itself.
class TextOptions : public QWidget
{
public:
    explicit TextOptions(const PrintSetup& setup)
    {
        setWindowTitle(PrintFlow::tr("Text"));
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(lineNumbers);
        layout->addWidget(colours);
        layout->addStretch(1);
        lineNumbers->setChecked(setup.lineNumbers);
        colours->setChecked(setup.colours);
    }

    QCheckBox* lineNumbers = new QCheckBox(PrintFlow::tr("Line &numbers"), this);
    QCheckBox* colours = new QCheckBox(PrintFlow::tr("&Colours of the language"), this);
};

void usePages(QPPrintableTextView::Job& job, const QPrinter& printer, TextRange selection)
{
    switch (printer.printRange()) {
    case QPrinter::Selection:
        job.range = selection;
        break;
    case QPrinter::PageRange:
        if (printer.fromPage() > 0)
            job.pages.addRange(printer.fromPage(), std::max(printer.fromPage(), printer.toPage()));
        break;
    default:
        break;
    }
    job.lastPageFirst = printer.pageOrder() == QPrinter::LastPageFirst;
}

} // namespace

QPPrintableTextView::Job printJob(Document& document, const UserDefaults& defaults)
{
    return {.text = document.syntaxColouring().colouringJob(),
            .range = document.completeString().range(),
            .font = ViewAppearance::fontOf(defaults),
            .footer = PrintFooter::from(defaults)};
}

PrintFlow::PrintFlow(Document& document, UserDefaults& defaults, UserQuestions& questions,
                     ProgressBar& bar, QWidget& window)
    : m_document(document), m_defaults(defaults), m_questions(questions), m_bar(bar),
      m_window(window)
{
    connect(&bar, &ProgressBar::cancelClicked, this, &PrintFlow::cancel);
}

PrintFlow::~PrintFlow()
{
    cancel();
    delete m_preview;
}

PrintPreview* PrintFlow::preview() const
{
    return m_preview;
}

/// All of the text, as the setup has it.
QPPrintableTextView::Job PrintFlow::wholeJob()
{
    QPPrintableTextView::Job job = printJob(m_document, m_defaults);
    job.lineNumbers = m_setup.lineNumbers;
    job.colours = m_setup.colours;
    return job;
}

/// The window that a dialog belongs to.
QWidget& PrintFlow::asker() const
{
    return m_preview && m_preview->isActiveWindow() ? *m_preview : m_window;
}

void PrintFlow::setUpPrinter()
{
    if (!m_printer)
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    if (m_setup.isLayoutChosen)
        m_printer->setPageLayout(m_setup.layout);
    else
        m_printer->setPageMargins(QPPrintableTextView::margins, QPageLayout::Point);
    m_printer->setDocName(m_document.displayName());
}

void PrintFlow::printTextView()
{
    if (isPrinting() || std::exchange(m_isAsking, true))
        return;
    PrintService::ask(this, [this](bool answers) {
        m_isAsking = false;
        if (answers)
            askHowToPrint();
        else
            Q_EMIT failed(tr("The print service does not answer. Print when it does again, or "
                             "save the pages as PDF."));
    });
}

void PrintFlow::askHowToPrint()
{
    if (isPrinting())
        return;
    setUpPrinter();
    auto* dialog = new QPrintDialog(m_printer.get(), &asker());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const TextRange selection = m_document.textView().primarySelection().range();
    const QPPrintableTextView::Job asked = wholeJob(); // the text that the selection is of
    dialog->setOption(QAbstractPrintDialog::PrintSelection, !selection.isEmpty());
    dialog->setOption(QAbstractPrintDialog::PrintPageRange);
    auto* options = new TextOptions(m_setup);
    dialog->setOptionTabs({options});
    connect(dialog, &QDialog::accepted, this, [this, options, selection, asked] {
        if (isPrinting())
            return;
        m_setup.lineNumbers = options->lineNumbers->isChecked();
        m_setup.colours = options->colours->isChecked();
        m_setup.layout = m_printer->pageLayout();
        m_setup.isLayoutChosen = true;
        refreshPreview();
        QPPrintableTextView::Job job = asked;
        job.lineNumbers = m_setup.lineNumbers;
        job.colours = m_setup.colours;
        usePages(job, *m_printer, selection);
        if (!m_printer->outputFileName().isEmpty()) {
            writeTo(m_printer->outputFileName(), job);
            return;
        }
        const PageForm form{m_setup.layout, m_document.displayName()};
        start(job, {m_document.displayName()},
              [form, queue = PrinterQueue::of(*m_printer)](QPPrintableTextView& view,
                                                           const GoOn& goOn) {
                  return queuePages(view, queue, form, goOn);
              });
    });
    dialog->open();
}

void PrintFlow::savePages()
{
    if (isPrinting())
        return;
    const QString path = m_document.path();
    const QString name =
        QFileInfo(m_document.displayName()).completeBaseName() + QStringLiteral(".pdf");
    const QDir folder = path.isEmpty() ? QDir::current() : QFileInfo(path).dir();
    m_questions.askForSavePath(&asker(), tr("Save as PDF"), folder.filePath(name),
                               [this](const QString& chosen) {
                                   if (!chosen.isEmpty() && !isPrinting())
                                       writeTo(chosen, wholeJob());
                               });
}

void PrintFlow::writeTo(const QString& path, const QPPrintableTextView::Job& job)
{
    const PageForm form{m_setup.layout, m_document.displayName()};
    start(job, {QDir::toNativeSeparators(path), true},
          [path, form](QPPrintableTextView& view, const GoOn& goOn) {
              return writePdf(view, path, form, goOn);
          });
}

void PrintFlow::showPreview()
{
    // One that was closed is there until the event loop turns.
    if (m_preview && m_preview->isHidden()) {
        delete m_preview.data();
        m_preview.clear();
    }
    if (!m_preview) {
        m_preview = new PrintPreview(m_setup);
        connect(m_preview, &PrintPreview::printClicked, this, &PrintFlow::printTextView);
        connect(m_preview, &PrintPreview::saveClicked, this, &PrintFlow::savePages);
        connect(m_preview, &PrintPreview::setupChanged, this, &PrintFlow::refreshPreview);
        connect(m_preview, &PrintPreview::activated, this, [this] {
            if (m_isPreviewOld)
                refreshPreview();
        });
        connect(&m_document.textStorage(), &TextStorage::edited, m_preview,
                [this] { m_isPreviewOld = true; });
        // Each letter of the footer's title comes as a change of its own.
        auto* settling = new QTimer(m_preview);
        settling->setSingleShot(true);
        settling->setInterval(settingsDelay);
        connect(settling, &QTimer::timeout, this, &PrintFlow::refreshPreview);
        connect(&m_document, &Document::textViewSettingsApplied, settling,
                qOverload<>(&QTimer::start));
    }
    refreshPreview();
    m_preview->present();
}

void PrintFlow::refreshPreview()
{
    m_isPreviewOld = false;
    if (m_preview)
        m_preview->setJob(wholeJob(), m_document.displayName());
}

void PrintFlow::cancel()
{
    if (m_state)
        m_state->cancelled = true;
}

void PrintFlow::start(const QPPrintableTextView::Job& job, const Errand& errand, const Print& print)
{
    m_state = std::make_shared<State>();
    m_bar.begin({tr("Printing “%1”"), errand.name, tr("Stop printing")});
    Q_EMIT printingChanged();
    runInBackground(
        this,
        [this_ = QPointer(this), job, print, state = m_state] {
            const WaitingInPool waiting; // others need not wait for a long job
            QPPrintableTextView view(job);
            return print(view, [&](QPPrintableTextView::Progress progress) {
                // One report is under way at a time, so that they cannot pile up.
                if (!state->isTelling.exchange(true))
                    QMetaObject::invokeMethod(
                        qApp,
                        [this_, progress, state] {
                            state->isTelling = false;
                            if (this_)
                                this_->show(progress);
                        },
                        Qt::QueuedConnection);
                return !state->cancelled;
            });
        },
        [this, errand](const PrintAnswer& answer) { finish(answer, errand); });
}

void PrintFlow::show(const QPPrintableTextView::Progress& progress)
{
    if (!m_state)
        return;
    m_bar.setShare(progress.share);
    notePage(progress.page);
}

void PrintFlow::notePage(int page)
{
    if (page > 0)
        m_defaults.setValue(keys::previewPageInt, page);
}

void PrintFlow::finish(const PrintAnswer& answer, const Errand& errand)
{
    m_state.reset();
    m_bar.end();
    notePage(answer.currentPage);
    Q_EMIT printingChanged();
    switch (answer.outcome) {
    case QPPrintableTextView::Outcome::Printed:
    case QPPrintableTextView::Outcome::Cancelled:
        break;
    case QPPrintableTextView::Outcome::NoSuchPages:
        Q_EMIT failed(tr("“%1” has %Ln page(s); print others.", nullptr, answer.pageCount)
                          .arg(m_document.displayName()));
        break;
    case QPPrintableTextView::Outcome::Failed:
        Q_EMIT failed((errand.isFile
                           ? tr("“%1” was not written: %2. Save it in another place, or make room "
                                "there.")
                           : tr("“%1” was not printed: %2. See whether the printer is ready, or "
                                "save the pages as PDF."))
                          .arg(errand.name, answer.error));
        break;
    }
}

} // namespace quillory
