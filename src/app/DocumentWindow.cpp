#include "app/DocumentWindow.h"

#include "app/Autosave.h"
#include "app/ColourExport.h"
#include "app/CommandActions.h"
#include "app/DocumentController.h"
#include "app/DocumentMessages.h"
#include "app/EditingAids.h"
#include "app/ExternalChanges.h"
#include "app/FirstPaint.h"
#include "app/FullScreenWidth.h"
#include "app/GoToLineDialog.h"
#include "app/LoadFlow.h"
#include "app/MainMenu.h"
#include "app/MessageArea.h"
#include "app/PrintFlow.h"
#include "app/ProgramAids.h"
#include "app/ProgressBar.h"
#include "app/RecoveryMessage.h"
#include "app/RereadFlow.h"
#include "app/SaveFlow.h"
#include "app/SpellingAids.h"
#include "app/StatusLine.h"
#include "app/TitleBarButtons.h"
#include "app/TitleBarDecoration.h"
#include "app/UserQuestions.h"
#include "app/VersionsFlow.h"
#include "app/ViewAppearance.h"
#include "app/WebPreview.h"
#include "app/WindowPresentation.h"
#include "document/Document.h"
#include "foundation/Background.h"
#include "syntax/PageColouring.h"
#include "text/TextEncoder.h"
#include "view/MarkerLineNumberView.h"
#include "view/PastedText.h"
#include "view/RangeRects.h"
#include "view/TextViewWidget.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QVBoxLayout>

namespace quillory {

DocumentWindow::DocumentWindow(std::unique_ptr<Document> document, const WindowServices& services)
    : m_services(services), m_document(std::move(document))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    m_document->prepareDefinitions();
    build();
    connectDocument();
    m_document->windowControllerDidLoadNib(this);
    // Nothing can be typed into a file that nothing is seen of.
    if (m_document->isUndecoded())
        m_document->textView().setEditable(false);
    m_presentation = new WindowPresentation(*this);
    m_menu = new MainMenu(*this);
    m_titleBarButtons = new TitleBarButtons(*this);
    menuBar()->setCornerWidget(m_titleBarButtons);
    new TitleBarDecoration(*this, *m_titleBarButtons, *centralWidget());
    m_document->textView().setContextMenu(m_menu->newContextMenu());
    m_spelling = std::make_unique<SpellingAids>(*this, m_services.controller.spellChecker());
    m_actions = std::make_unique<CommandActions>(*this);
    m_status->showPosition(*m_document);
    updateTitle();
    showStateMessages(*this);
}

DocumentWindow::~DocumentWindow()
{
    // The widgets look at the document to the last.
    delete takeCentralWidget();
    delete m_settings;
}

EditJournal& DocumentWindow::journal() const
{
    return m_document->journal();
}

void DocumentWindow::build()
{
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_messages = new MessageArea(content);
    m_view = new TextViewWidget(m_document->textView(), m_document->overlay(), content,
                                ViewAppearance::fontOf(m_services.environment.defaults));
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setAccessibleDescription(tr("Text of the document"));
    m_ruler = new MarkerLineNumberView(*m_view);
    connect(m_view, &TextViewWidget::coloursChanged, m_ruler,
            [this] { m_ruler->setLook(LineNumberLook::beside(m_view->colours())); });
    m_status = new StatusLine(content);
    m_status->setObjectName(QStringLiteral("statusLine"));
    layout->addWidget(m_messages);
    layout->addWidget(m_view, 1);
    auto* progressBar = new ProgressBar(content);
    layout->addWidget(progressBar);
    layout->addWidget(m_status);
    setCentralWidget(content);
    new FullScreenWidth(*this, m_services.environment.defaults);
    m_view->setFocus();
    connect(new FirstPaint(*m_view), &FirstPaint::happened, this, &DocumentWindow::firstPainted);

    const DocumentEnvironment& environment = m_services.environment;
    m_appearance =
        std::make_unique<ViewAppearance>(*m_view, environment, m_document->syntaxColouring());
    m_saving = std::make_unique<SaveFlow>(*m_document, environment, m_services.questions, *this);
    m_rereading = std::make_unique<RereadFlow>(*m_document, m_services.questions, *this);
    m_loading = std::make_unique<LoadFlow>(*m_document, *progressBar, *this);
    m_colourExport = std::make_unique<ColourExport>(*m_document, m_services.questions, *this);
    m_printing = std::make_unique<PrintFlow>(*m_document, environment.defaults,
                                             m_services.questions, *progressBar, *this);
}

void DocumentWindow::connectDocument()
{
    Document& document = *m_document;
    const auto showPosition = [this] { m_status->showPosition(*m_document); };
    connect(&document.textView(), &QPTextView::selectionDidChange, this, showPosition);
    connect(&document.textView(), &QPTextView::textDidChange, this, showPosition);
    connect(&document, &Document::editedChanged, this,
            [this] { setWindowModified(m_document->isDocumentEdited()); });
    connect(&document, &Document::recordChanged, this, [this] {
        updateTitle();
        m_status->showForm(*m_document);
        updateLineBreaksMessage(*this);
    });
    connect(&document, &Document::alertRequested, this,
            [this](const QString& title, const QString& text) {
                m_services.questions.showAlert(this, title, text);
            });
    connect(&document, &Document::textViewSettingsApplied, this, [this] { m_appearance->apply(); });
    connect(m_view, &TextViewWidget::visibleRangeChanged, &document, &Document::pageRecolour);
    connect(&document.syntaxColouring(), &SyntaxColouring::faultsChanged, this,
            [this] { showDefinitionFaults(*this); });
    connect(&document, &Document::settingsSheetRequested, this, [this] {
        if (isUntouched())
            showSettings(SettingsPopover::Reason::NewDocument);
    });

    connect(m_view, &TextViewWidget::filesDropped, this, &DocumentWindow::openFiles);
    connect(m_messages, &MessageArea::dismissed, m_view, [this] { m_view->setFocus(); });
    connect(&document.serverRequests(), &ServerRequests::runningChanged, this,
            &DocumentWindow::updateActivity);
    connect(m_status, &StatusLine::activityCancelled, &document.serverRequests(),
            &ServerRequests::cancel);
    connect(m_status, &StatusLine::positionClicked, this, &DocumentWindow::askForPlace);
    connect(m_status, &StatusLine::formClicked, this, [this] {
        if (m_settings && m_settings->isVisible())
            m_settings->close();
        else
            showSettings();
    });

    connect(m_saving.get(), &SaveFlow::savingChanged, this, &DocumentWindow::updateActivity);
    connect(m_saving.get(), &SaveFlow::saved, this, [this](const QString& path) {
        m_messages->clearAll();
        m_services.controller.noteSaved(path);
    });
    connect(m_saving.get(), &SaveFlow::failed, this,
            [this](const SaveResult& result) { showSaveProblem(*this, result); });
    connect(m_loading.get(), &LoadFlow::loaded, this, [this] { showStateMessages(*this); });
    connect(m_colourExport.get(), &ColourExport::exportingChanged, this,
            &DocumentWindow::updateActivity);
    connect(m_colourExport.get(), &ColourExport::failed, this, [this](const QString& message) {
        m_messages->show(MessageArea::Subject::Export, {Message::Kind::Problem, message});
    });
    connect(m_printing.get(), &PrintFlow::printingChanged, this, &DocumentWindow::updateActivity);
    connect(m_printing.get(), &PrintFlow::failed, this, [this](const QString& message) {
        m_messages->show(MessageArea::Subject::Export, {Message::Kind::Problem, message});
    });
    connect(m_rereading.get(), &RereadFlow::readingChanged, this, &DocumentWindow::updateActivity);
    connect(m_rereading.get(), &RereadFlow::reread, this, [this] {
        m_messages->clearAll();
        showStateMessages(*this);
    });
    connect(m_rereading.get(), &RereadFlow::failed, this,
            [this](const QString& message, bool undecodable) {
                showReadProblem(*this, message, undecodable);
            });
    m_aids = std::make_unique<EditingAids>(*this);
    m_programs = std::make_unique<ProgramAids>(*this);
    new ExternalChanges(*this);
    watchJournal(*this);
    m_autosave = new Autosave(*this);
    m_versions = new VersionsFlow(*this);
    m_preview = std::make_unique<WebPreview>(*this);
}

bool DocumentWindow::isUntouched() const
{
    return m_document->path().isEmpty() && !m_document->isDocumentEdited() &&
           m_document->completeString().isEmpty() && !m_document->undoManager().canUndo();
}

bool DocumentWindow::isBusy() const
{
    return m_saving->isSaving() || m_rereading->isReading();
}

// The window's own looks

void DocumentWindow::updateTitle()
{
    QString name = m_document->displayName();
    m_view->setAccessibleName(name);
    name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    setWindowTitle(tr("%1[*] — Quillory").arg(name));
    setWindowModified(m_document->isDocumentEdited());
    if (windowFilePath() != m_document->path())
        setWindowFilePath(m_document->path());
}

void DocumentWindow::updateActivity()
{
    const ServerRequests& server = m_document->serverRequests();
    const QString own = m_saving->isSaving()            ? tr("Saving…")
                        : m_rereading->isReading()      ? tr("Reading…")
                        : m_colourExport->isExporting() ? tr("Exporting…")
                                                        : QString();
    if (own.isEmpty() && server.isRunning())
        m_status->setActivity(tr("Waiting for %1…").arg(server.hosts().join(u", ")), true);
    else
        m_status->setActivity(own);
    m_menu->scheduleRefresh();
}

void DocumentWindow::toggleFullScreen()
{
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void DocumentWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && m_menu)
        m_menu->scheduleRefresh();
}

void DocumentWindow::openFiles(const QStringList& paths)
{
    std::vector<OpenTarget> targets;
    for (const QString& path : paths)
        targets.push_back({path, {}});
    controller().open(targets, this);
}

void DocumentWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (localFiles(*event->mimeData()).isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void DocumentWindow::dropEvent(QDropEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    openFiles(localFiles(*event->mimeData()));
}

void DocumentWindow::copyWithColours()
{
    const QString html = m_colourExport->selectionAsHtml(m_view->textFont().family());
    if (html.isEmpty())
        m_view->commands().copy();
    else
        m_view->commands().copyRichText(html);
}

// Places in the text

TextRange DocumentWindow::visibleTextRange()
{
    const TextRange lines = m_view->visibleRange();
    if (lines.length <= PageColouring::longestPage)
        return lines;
    const std::vector<TextRange> inSight =
        rangesInSight(m_view->textGeometry(), m_view->textViewport());
    return inSight.empty() ? lines
                           : TextRange::between(inSight.front().location, inSight.back().end());
}

void DocumentWindow::goTo(TextPlace place)
{
    if (!m_loading->postpones(place.line, [this, place] { goTo(place); }))
        goToOffset(offsetOf(m_document->completeString(), place));
}

void DocumentWindow::goToLine(qint64 number)
{
    if (!m_loading->postpones(number, [this, number] { goToLine(number); }))
        m_document->goToLineVoid(number);
}

void DocumentWindow::goToOffset(TextOffset offset)
{
    m_document->textView().setSelectedRange({offset, 0});
    m_view->centerOn(offset);
    m_view->setFocus();
}

void DocumentWindow::askForPlace()
{
    const TextSnapshot& text = m_document->completeString();
    const TextOffset caret = m_document->textView().primarySelection().head;
    auto* dialog = new GoToLineDialog(placeOf(text, caret).line, text.lineCount(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &GoToLineDialog::lineChosen, this, &DocumentWindow::goToLine);
    connect(dialog, &GoToLineDialog::placeChosen, this, &DocumentWindow::goTo);
    dialog->open();
}

// The form of the document

void DocumentWindow::showSettings(SettingsPopover::Reason reason)
{
    if (m_document->isLoading()) {
        Q_EMIT m_document->textView().beep();
        return;
    }
    if (!m_settings) {
        m_settings = new SettingsPopover(*m_document, m_services.environment, this);
        connect(m_settings, &SettingsPopover::encodingChosen, this, &DocumentWindow::checkEncoding);
        connect(m_settings, &SettingsPopover::closed, this, [this](bool hadFocus) {
            if (hadFocus)
                m_view->setFocus();
        });
    }
    m_settings->open(reason);
}

void DocumentWindow::chooseEncoding(StringEncoding encoding)
{
    if (m_document->isUndecoded()) {
        m_rereading->reopen(encoding);
        return;
    }
    EncodingList& list = m_document->encodingsArrayController();
    list.selectNumber(encoding);
    m_document->changeEncodingAction();
    checkEncoding();
}

/// Tells of the first character that the document's encoding lacks, if there is one, or that there
/// is none any more. Looking takes long in a long text, so it is done aside.
void DocumentWindow::checkEncoding()
{
    const StringEncoding encoding = m_document->record().encoding;
    m_messages->clear(MessageArea::Subject::Encoding);
    m_messages->clear(MessageArea::Subject::Saving);
    runInBackground(
        // The window may be closed before the answer comes.
        &m_services.controller,
        [text = m_document->completeString(), encoding] { return findUnencodable(text, encoding); },
        [window = QPointer(this), encoding](const std::optional<EncodingFailure>& failure) {
            if (window && failure && encoding == window->m_document->record().encoding)
                showUnencodable(*window, *failure);
        });
}

void DocumentWindow::chooseLineBreaks(int lbFormat)
{
    m_document->record().lbFormat = lbFormat;
    m_document->changeLBFormatAction(lbFormat);
}

// Closing

void DocumentWindow::closeEvent(QCloseEvent* event)
{
    if (!m_mayClose && (isBusy() || m_document->isDocumentEdited())) {
        event->ignore();
        // The answer closes the window, which it cannot while it is being closed.
        QMetaObject::invokeMethod(
            this, [this] { closeAfterQuestions(); }, Qt::QueuedConnection);
        return;
    }
    m_services.controller.rememberSize(*this);
    event->accept();
    Q_EMIT closed(this);
}

void DocumentWindow::closeAfterQuestions(const std::function<void(bool)>& then)
{
    if (m_asking) {
        raise();
        activateWindow();
        if (then)
            then(false);
        return;
    }
    m_asking = true;
    whenIdle([this, then] { saveOrAskBeforeClosing(then); });
}

void DocumentWindow::whenIdle(const std::function<void()>& then)
{
    if (m_rereading->isReading())
        connect(
            m_rereading.get(), &RereadFlow::readingChanged, this, [this, then] { whenIdle(then); },
            Qt::SingleShotConnection);
    else
        m_saving->whenIdle(then);
}

void DocumentWindow::saveOrAskBeforeClosing(const std::function<void(bool)>& then)
{
    m_autosave->saveBefore([this, then] { askBeforeClosing(then); });
}

void DocumentWindow::askBeforeClosing(const std::function<void(bool)>& then)
{
    const auto stay = [this, then] {
        m_asking = false;
        if (then)
            then(false);
    };
    if (!m_document->isDocumentEdited()) {
        closeWithoutQuestions(then);
        return;
    }
    raise();
    activateWindow();
    m_services.questions.askToSave(
        this, m_document->displayName(), [this, then, stay](UserQuestions::BeforeClosing answer) {
            switch (answer) {
            case UserQuestions::BeforeClosing::Discard:
                closeWithoutQuestions(then);
                break;
            case UserQuestions::BeforeClosing::Cancel:
                stay();
                break;
            case UserQuestions::BeforeClosing::Save:
                // The text may have been edited on while it was saved.
                m_saving->save([this, then, stay](bool saved) {
                    if (saved)
                        m_saving->whenIdle([this, then] { askBeforeClosing(then); });
                    else
                        stay();
                });
                break;
            }
        });
}

void DocumentWindow::closeWithoutQuestions(const std::function<void(bool)>& then)
{
    m_asking = false;
    m_mayClose = true;
    close();
    if (then)
        then(true);
}

} // namespace quillory
