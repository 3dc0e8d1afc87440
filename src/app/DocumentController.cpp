#include "app/DocumentController.h"

#include "app/LoadFlow.h"
#include "app/UserQuestions.h"
#include "app/WindowRestoration.h"
#include "app/WindowSize.h"
#include "document/Document.h"
#include "document/DocumentType.h"
#include "foundation/Background.h"
#include "view/LineNumberView.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

namespace quillory {

namespace {

/// A path that is the same however a file is called; empty for a file that is not there.
QString canonical(const QString& path)
{
    return QFileInfo(path).canonicalFilePath();
}

} // namespace

DocumentController::DocumentController(const DocumentEnvironment& environment,
                                       UserQuestions& questions, QSettings& state,
                                       const SpellingEngineSource& spellingEngine)
    : m_environment(environment), m_questions(questions), m_state(state), m_recent(state),
      m_spellChecker(spellingEngine), m_preferences(environment, questions, state),
      m_themeFollowing(environment), m_loader(std::make_unique<DocumentLoader>())
{}

DocumentController::~DocumentController()
{
    m_loader.reset();
    for (DocumentWindow* window : std::exchange(m_windows, {})) {
        window->disconnect(this);
        delete window;
    }
    backgroundPool().waitForDone(); // what is still written uses the environment
}

// Windows

DocumentWindow* DocumentController::newDocument()
{
    return newUntitled(++m_lastUntitled);
}

DocumentWindow* DocumentController::newUntitled(int number)
{
    auto document = std::make_unique<Document>(m_environment);
    document->setUntitledNumber(number);
    return show(std::move(document), nullptr);
}

DocumentWindow* DocumentController::show(std::unique_ptr<Document> document,
                                         DocumentWindow* inPlaceOf)
{
    auto* window = new DocumentWindow(std::move(document), {m_environment, m_questions, *this});
    m_windows.push_back(window);
    connect(window, &DocumentWindow::closed, this, [this](DocumentWindow* gone) {
        gone->loading().stop();
        std::erase(m_windows, gone);
        settle();
    });
    connect(window, &DocumentWindow::firstPainted, &m_themeFollowing, &ThemeFollowing::start);
    applyInitialSize(*window, m_state);
    const bool replaces = inPlaceOf && inPlaceOf->isUntouched();
    if (replaces)
        window->setGeometry(inPlaceOf->geometry());
    m_opened |= !window->document().isLoading();
    Q_EMIT windowMade(window);
    window->show();
    if (replaces)
        inPlaceOf->close();
    Q_EMIT windowOpened(window);
    return window;
}

DocumentWindow& DocumentController::restore(ReadResult result, int untitledNumber)
{
    m_lastUntitled = std::max(m_lastUntitled, untitledNumber);
    auto document = std::make_unique<Document>(m_environment);
    document->setUntitledNumber(untitledNumber);
    document->adopt(std::move(result));
    return *show(std::move(document), nullptr);
}

void DocumentController::raise(DocumentWindow& window)
{
    if (window.isMinimized())
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.raise();
    window.activateWindow();
}

void DocumentController::raiseNeighbour(DocumentWindow& window, int steps)
{
    const auto count = std::ssize(m_windows);
    const auto at =
        std::distance(m_windows.begin(), std::find(m_windows.begin(), m_windows.end(), &window));
    raise(*m_windows[size_t((at + steps + count) % count)]);
}

void DocumentController::rememberSize(const DocumentWindow& window)
{
    storeSize(window, m_state);
}

DocumentWindow* DocumentController::windowShowing(const QString& path) const
{
    const QString wanted = canonical(path);
    const auto it = std::find_if(m_windows.begin(), m_windows.end(), [&](DocumentWindow* window) {
        const QString shown = window->document().path();
        return !shown.isEmpty() &&
               (shown == path || (!wanted.isEmpty() && canonical(shown) == wanted));
    });
    return it == m_windows.end() ? nullptr : *it;
}

bool DocumentController::isOpening(const QString& path) const
{
    return m_reading.contains(canonical(path));
}

// Opening

void DocumentController::askForFiles(DocumentWindow& window)
{
    const QString path = window.document().path();
    const QString folder = path.isEmpty() ? QDir::currentPath() : QFileInfo(path).path();
    m_questions.askForFiles(&window, folder,
                            [this, guard = QPointer(&window)](const QStringList& paths) {
                                std::vector<OpenTarget> targets;
                                for (const QString& chosen : paths)
                                    targets.push_back({chosen, {}});
                                open(targets, guard);
                            });
}

void DocumentController::open(const std::vector<OpenTarget>& targets, DocumentWindow* window)
{
    const QPointer<DocumentWindow> guard(window);
    for (const OpenTarget& target : targets)
        openOne(target, guard);
}

void DocumentController::openOne(const OpenTarget& target, DocumentWindow* window)
{
    const auto taken = [this, target, guard = QPointer(window)](std::optional<ReadResult> result) {
        --m_underway;
        m_reading.removeOne(result ? canonical(result->path) : canonical(target.path));
        if (result)
            take(std::move(*result), target, guard);
        settle();
    };
    if (target.isStandardInput()) {
        ++m_underway;
        m_loader->loadStandardInput(window, taken);
        return;
    }
    const QString path = QDir::cleanPath(QFileInfo(target.path).absoluteFilePath());
    if (DocumentWindow* shown = windowShowing(path)) {
        raise(*shown);
        if (target.place)
            shown->goTo(*target.place);
        return;
    }
    const QFileInfo info(path);
    if (!info.exists()) {
        openNewFile(path, target, window);
        return;
    }
    const QString name = canonical(path);
    if (m_reading.contains(name))
        return;
    if (const std::shared_ptr<GradualRead> reading = m_loader->begin(path)) {
        openLarge(reading, target, window);
        return;
    }
    m_reading.append(name);
    ++m_underway;
    m_loader->load(path, window, taken);
}

/// A path at which no file is: the document is new, and saving makes the file.
void DocumentController::openNewFile(const QString& path, const OpenTarget& target,
                                     DocumentWindow* window)
{
    const QFileInfo folder(QFileInfo(path).path());
    if (!folder.isDir()) {
        fail(tr("There is no folder “%1”, so “%2” cannot be opened. Make the folder first, or open "
                "another file.")
                 .arg(folder.filePath(), QFileInfo(path).fileName()),
             window);
        return;
    }
    ReadResult nothing;
    nothing.answer = true;
    nothing.path = path;
    nothing.type = DocumentType::ofFile(path);
    take(std::move(nothing), target, window);
}

void DocumentController::take(ReadResult result, const OpenTarget& target, DocumentWindow* window)
{
    if (!result.answer) {
        fail(result.message, window);
        return;
    }
    const QString path = result.path;
    auto document = std::make_unique<Document>(m_environment);
    document->setUntitledNumber(path.isEmpty() ? ++m_lastUntitled : 0);
    document->adopt(std::move(result));
    DocumentWindow* shown = show(std::move(document), window);
    // What came from standard input is nowhere on disk yet.
    if (path.isEmpty()) {
        shown->document().undoManager().markDirty();
        shown->journal().keepText();
    } else if (QFileInfo::exists(path))
        m_recent.note(path);
    if (target.place)
        shown->goTo(*target.place);
}

/// The window comes at once, with the beginning of the text.
void DocumentController::openLarge(const std::shared_ptr<GradualRead>& reading,
                                   const OpenTarget& target, DocumentWindow* window)
{
    std::optional<int> untitled;
    if (window && window->isUntouched())
        untitled = window->document().untitledNumber();
    auto document = std::make_unique<Document>(m_environment);
    document->adoptBeginning(reading->beginning());
    DocumentWindow& shown = *show(std::move(document), window);
    shown.ruler().expectLines(reading->expectedLineCount());
    LoadFlow& loading = shown.loading();
    connect(&loading, &LoadFlow::loaded, this, [this, &shown] {
        m_opened = true;
        m_recent.note(shown.document().path());
    });
    connect(&loading, &LoadFlow::cancelled, this,
            [this, &shown, untitled] { giveUp(shown, untitled, {}); });
    connect(&loading, &LoadFlow::failed, this,
            [this, &shown, untitled](const QString& message) { giveUp(shown, untitled, message); });
    loading.start(reading, *m_loader);
    if (target.place)
        shown.goTo(*target.place);
}

/// Closes the window of a file that will not be there as a whole; the untouched document that it
/// took the place of, with the number \a untitled, comes back. Tells \a message, if there is one.
void DocumentController::giveUp(DocumentWindow& loading, std::optional<int> untitled,
                                const QString& message)
{
    ++m_underway;
    DocumentWindow* back = untitled ? newUntitled(*untitled) : nullptr;
    if (back)
        back->setGeometry(loading.geometry());
    loading.close();
    if (!message.isEmpty())
        fail(message, back);
    --m_underway;
    settle();
}

void DocumentController::fail(const QString& message, DocumentWindow* window)
{
    m_failed = true;
    qWarning("quillory: %s", qUtf8Printable(message));
    ++m_underway;
    m_questions.tell(window, tr("The file cannot be opened."), message, [this] {
        --m_underway;
        settle();
    });
}

// Quitting

void DocumentController::quit()
{
    if (m_restoration && m_restoration->keepsWindows())
        m_restoration->quit();
    else
        closeAll();
}

void DocumentController::quitForGood()
{
    if (m_restoration)
        m_restoration->forget();
    closeAll();
}

void DocumentController::closeAll()
{
    if (m_windows.empty()) {
        settle();
        return;
    }
    // The windows without a question go last, so that a Cancel keeps them.
    const auto edited =
        std::find_if(m_windows.begin(), m_windows.end(), [](DocumentWindow* window) {
            return window->isBusy() || window->document().isDocumentEdited();
        });
    DocumentWindow* next = edited == m_windows.end() ? m_windows.back() : *edited;
    next->closeAfterQuestions([this](bool closed) {
        if (closed)
            closeAll();
    });
}

/// Without a window there is no way back into the program, so it ends with its last one.
void DocumentController::settle()
{
    Q_EMIT settled();
    if (m_windows.empty() && m_underway == 0)
        Q_EMIT finished();
}

} // namespace quillory
