#include "app/WindowRestoration.h"

#include "app/DocumentController.h"
#include "app/Recovery.h"
#include "app/SessionRecorder.h"
#include "app/UserQuestions.h"
#include "app/WindowPlace.h"
#include "document/Document.h"
#include "document/EditJournal.h"
#include "foundation/Background.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"

#include <QApplication>
#include <QFileInfo>

namespace quillory {

namespace {

using namespace std::chrono_literals;

constexpr auto forTheFirst = 50ms; // in which the window in front is painted, and takes keys
constexpr qsizetype namesTold = 10;

/// May take long: a folder of another machine can be out of reach.
bool isReadableFile(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() && info.isReadable();
}

/// What is not saved stays in the journal.
void closeKeeping(DocumentWindow& window)
{
    if (window.document().isDocumentEdited())
        window.journal().leave();
    window.closeWithoutQuestions();
}

} // namespace

WindowRestoration::WindowRestoration(DocumentController& controller,
                                     const DocumentEnvironment& environment,
                                     UserQuestions& questions)
    : m_controller(controller), m_environment(environment), m_questions(questions),
      m_file(environment.folders.sessionFile())
{
    controller.setRestoration(this);
    m_turn.setSingleShot(true);
    connect(&m_turn, &QTimer::timeout, this, &WindowRestoration::openNext);
}

WindowRestoration::~WindowRestoration()
{
    if (m_recorder && !m_isQuitting)
        save();
    m_controller.setRestoration(nullptr);
}

// Bringing back

void WindowRestoration::start(bool behind)
{
    if (!m_file.claim()) {
        recoverRest();
        return;
    }
    m_behind = behind;
    if (keepsWindows()) {
        const std::vector<SavedWindow> windows = m_file.read();
        m_pending.assign(windows.begin(), windows.end());
        // Each opens behind the one in front, and before those that opened earlier.
        if (!m_pending.empty()) {
            m_front = m_pending.front();
            std::reverse(m_pending.begin() + 1, m_pending.end());
        }
    }
    m_recorder = std::make_unique<SessionRecorder>(m_controller);
    connect(m_recorder.get(), &SessionRecorder::changed, this, &WindowRestoration::record);
    m_isRestoring = !m_pending.empty();
    if (!m_isRestoring) {
        recoverRest();
        return;
    }
    connect(&m_controller, &DocumentController::windowMade, this, &WindowRestoration::place);
    connect(&m_controller, &DocumentController::windowOpened, this, &WindowRestoration::show);
    connect(&m_controller, &DocumentController::settled, this,
            &WindowRestoration::goOnUnlessOpening);
    openNext();
}

void WindowRestoration::openNext()
{
    if (!m_isRestoring)
        return;
    m_opening.reset();
    m_isAsked = false;
    if (m_isQuitting)
        return;
    // A text that is brought back is not to be opened as its file says, too.
    auto next = std::find_if(m_pending.begin(), m_pending.end(), [this](const SavedWindow& saved) {
        return m_recovery && !saved.journal.isEmpty();
    });
    if (next == m_pending.end() && m_hasTexts) {
        recoverRest();
        return;
    }
    if (m_pending.empty()) {
        finishRestoring();
        return;
    }
    if (next == m_pending.end())
        next = m_pending.begin();
    m_opening = std::move(*next);
    m_pending.erase(next);
    if (m_recovery && !m_opening->journal.isEmpty())
        recoverText(*m_opening);
    else
        openFile(*m_opening);
}

/// The texts that no window of the last session is known to have had.
void WindowRestoration::recoverRest()
{
    m_hasTexts = false;
    m_recoversRest = true;
    const auto goOn = [this] {
        m_recoversRest = false;
        Q_EMIT textsRestored();
        openNext();
    };
    if (m_recovery)
        m_recovery->recoverAll(goOn);
    else
        goOn();
}

void WindowRestoration::recoverText(const SavedWindow& saved)
{
    m_recovery->recover(
        saved.journal,
        [this](DocumentWindow* window) {
            // Its window has gone on by itself.
            if (!m_isRestoring || !m_opening)
                return;
            if (!window) {
                // It was saved since; there may be another one.
                m_opening->journal.clear();
                m_pending.push_front(*m_opening);
            }
            openNext();
        },
        saved.wasLeft);
}

void WindowRestoration::openFile(const SavedWindow& saved)
{
    if (saved.path.isEmpty()) {
        m_turn.start(0ms);
        return;
    }
    runInBackground(
        this, [path = saved.path] { return isReadableFile(path); },
        [this, path = saved.path](bool isReadable) {
            // It may have been asked for by other ways meanwhile.
            if (!m_isRestoring || !m_opening || m_opening->path != path)
                return;
            if (m_isQuitting) {
                m_pending.push_back(*m_opening);
                openNext();
                return;
            }
            if (isReadable && !m_controller.windowShowing(path)) {
                m_isAsked = true;
                m_controller.open({{path, {}}});
                return;
            }
            if (!isReadable)
                m_missing.append(path);
            m_turn.start(0ms);
        });
}

/// The window that is made now.
bool WindowRestoration::isRecovered() const
{
    return m_recovery && m_recovery->isShowing();
}

void WindowRestoration::place(DocumentWindow* window)
{
    const QString path = window->document().path();
    const bool isNext = m_opening && m_opening->path == path && (!path.isEmpty() || isRecovered());
    SavedWindow saved;
    bool isFront = false;
    if (isNext) {
        isFront = m_opening->path == m_front.path && m_opening->frame == m_front.frame;
        saved = *m_opening;
    } else {
        const auto found = std::find_if(m_pending.begin(), m_pending.end(),
                                        [&](const SavedWindow& each) { return each.path == path; });
        if (path.isEmpty() || found == m_pending.end())
            return;
        saved = *found;
        m_pending.erase(found);
    }
    placeWindow(*window, saved, !isNext || (isFront && !m_behind));
    m_placed.insert(window, saved);
}

void WindowRestoration::show(DocumentWindow* window)
{
    const auto placed = m_placed.find(window);
    const bool isPlaced = placed != m_placed.end();
    const SavedWindow saved = isPlaced ? *placed : SavedWindow();
    if (isPlaced)
        m_placed.erase(placed);
    if (m_isQuitting) {
        if (isPlaced) {
            m_recorder->letGo(*window);
            m_pending.push_back(saved);
            if (m_opening && m_opening->path == saved.path)
                m_opening.reset();
        }
        QMetaObject::invokeMethod(
            window, [window] { closeKeeping(*window); }, Qt::QueuedConnection);
        return;
    }
    if (!isPlaced)
        return;
    window->setAttribute(Qt::WA_ShowWithoutActivating, false);
    // Not every window manager puts what does not ask for the keyboard behind what has it.
    connect(window, &DocumentWindow::firstPainted, window, [window] {
        QWidget* active = QApplication::activeWindow();
        if (active && active != window)
            active->raise();
    });
    m_recorder->note(*window, saved);
    // A text that is recovered is not all there yet.
    if (isRecovered())
        QMetaObject::invokeMethod(
            window, [window, saved] { showPlace(*window, saved); }, Qt::QueuedConnection);
    else
        showPlace(*window, saved);
    if (!m_opening || m_opening->path != saved.path)
        return;
    m_opening.reset();
    m_turn.start(std::exchange(m_isFirst, false) ? forTheFirst : 0ms);
}

/// The file that was to be opened could not be, which has been told.
void WindowRestoration::goOnUnlessOpening()
{
    if (!m_opening || !m_isAsked || m_controller.isOpening(m_opening->path))
        return;
    m_opening.reset();
    m_turn.start(0ms);
}

void WindowRestoration::finishRestoring()
{
    m_isRestoring = false;
    m_controller.disconnect(this);
    tellMissing();
    m_environment.notifications.post(notifications::didFinishRestoringWindows);
    record();
    Q_EMIT restored();
}

void WindowRestoration::tellMissing()
{
    if (m_missing.isEmpty())
        return;
    QStringList told = m_missing.mid(0, namesTold);
    if (m_missing.size() > namesTold)
        told += tr("and %n more", nullptr, int(m_missing.size() - namesTold));
    m_questions.tell(nullptr, tr("Files of the last session are not there any more."),
                     tr("They are missing, or may not be read:") + u"\n\n" + told.join(u'\n'),
                     [] {});
}

// Keeping

bool WindowRestoration::keepsWindows() const
{
    return m_file.isClaimed() && m_environment.defaults.value(keys::restoresWindows);
}

/// With \a isLast the program ends as it should.
std::vector<SavedWindow> WindowRestoration::session(bool isLast) const
{
    std::vector<SavedWindow> windows = m_recorder->session(m_exception);
    for (SavedWindow& window : windows)
        window.wasLeft = isLast;
    if (m_opening)
        windows.push_back(*m_opening);
    windows.insert(windows.end(), m_pending.rbegin(), m_pending.rend());
    return windows;
}

void WindowRestoration::record()
{
    if (m_isRestoring || m_isQuitting)
        return;
    if (keepsWindows())
        m_file.write(session(false));
    else
        m_file.remove();
}

void WindowRestoration::save()
{
    if (!m_recorder)
        return;
    const std::vector<SavedWindow> windows =
        keepsWindows() ? session(true) : std::vector<SavedWindow>();
    if (windows.empty())
        m_file.remove();
    else
        m_file.writeAtOnce(windows);
}

// Quitting

/// Whether closing \a window loses nothing that the next start does not bring back.
bool WindowRestoration::isKept(DocumentWindow& window) const
{
    if (window.isBusy())
        return false;
    if (!window.document().isDocumentEdited())
        return true;
    EditJournal& journal = window.journal();
    return !(m_exception && m_exception(window)) && !journal.id().isEmpty() && journal.flush();
}

void WindowRestoration::quit()
{
    if (m_isQuitting && m_asked) {
        m_controller.raise(*m_asked);
        return;
    }
    m_isQuitting = true;
    m_recorder->setKeepsClosed(true);
    // Once they are closed nobody knows any more.
    for (DocumentWindow* window : m_controller.windows()) {
        if (m_exception && m_exception(*window))
            m_recorder->letGo(*window);
    }
    quitStep();
}

/// The session goes on, and what was still to come back comes.
void WindowRestoration::stay()
{
    m_isQuitting = false;
    m_recorder->setKeepsClosed(false);
    if (!m_isRestoring)
        record();
    else if (!m_opening && !m_recoversRest)
        m_turn.start(0ms);
}

void WindowRestoration::forget()
{
    m_isRestoring = false;
    m_pending.clear();
    m_opening.reset();
}

void WindowRestoration::quitStep()
{
    const std::vector<DocumentWindow*> windows = m_controller.windows();
    const auto asked = std::find_if(windows.begin(), windows.end(),
                                    [this](DocumentWindow* window) { return !isKept(*window); });
    if (asked != windows.end()) {
        m_asked = *asked;
        m_asked->closeAfterQuestions([this](bool closed) {
            m_asked = nullptr;
            if (closed)
                quitStep();
            else
                stay();
        });
        return;
    }
    m_isRestoring = false;
    connect(
        &m_file, &SessionFile::written, this,
        [this] {
            for (DocumentWindow* window : std::vector(m_controller.windows())) {
                closeKeeping(*window);
            }
            m_controller.settle();
        },
        Qt::SingleShotConnection);
    m_file.write(session(true));
}

} // namespace quillory
