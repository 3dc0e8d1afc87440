#pragma once

#include "document/SessionFile.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace quillory {

class DocumentController;
class DocumentWindow;
class Recovery;
class SessionRecorder;
class UserQuestions;
struct DocumentEnvironment;

/// Brings the windows of the last session back, and keeps those of this one for the next start: a
/// moment after something changed and at the end, so that they come back also when the program is
/// killed. All of it while the user default "restoresWindows" is on.
class WindowRestoration : public QObject
{
    Q_OBJECT

public:
    /// All of it outlives this.
    WindowRestoration(DocumentController& controller, const DocumentEnvironment& environment,
                      UserQuestions& questions);
    /// Keeps the windows that are still open.
    ~WindowRestoration() override;

    /// Whether \a window is none to bring back.
    using Exception = std::function<bool(const DocumentWindow& window)>;
    void setException(Exception exception) { m_exception = std::move(exception); }

    /// What brings back texts that are not saved; without it only files are opened.
    void setRecovery(Recovery& recovery) { m_recovery = &recovery; }

    /// Begins to open the windows of the last session, one a turn of the event loop: those with
    /// texts that are not saved, and what else there is to recover, then the one in front and the
    /// others. With \a behind they stay behind what else is opened. Opens nothing where
    /// another program that runs does it.
    void start(bool behind);
    bool isRestoring() const { return m_isRestoring; }

    /// Whether the windows that are open come back with the next start.
    bool keepsWindows() const;
    /// Closes all windows for this session, without a question for those that are kept.
    void quit();
    /// Gives up what is still to come back.
    void forget();
    /// Writes down what is open, before it returns; not what another program keeps there.
    void save();

Q_SIGNALS:
    /// Once after start(): what is still to come are files as they are on the disk.
    void textsRestored();
    /// What was to come back is open.
    void restored();

private:
    void openNext();
    void openFile(const SavedWindow& saved);
    void recoverText(const SavedWindow& saved);
    void recoverRest();
    bool isKept(DocumentWindow& window) const;
    bool isRecovered() const;
    void place(DocumentWindow* window);
    void show(DocumentWindow* window);
    void goOnUnlessOpening();
    void finishRestoring();
    void tellMissing();
    void record();
    std::vector<SavedWindow> session(bool isLast) const;
    void quitStep();
    void stay();

    DocumentController& m_controller;
    const DocumentEnvironment& m_environment;
    UserQuestions& m_questions;
    SessionFile m_file;
    std::unique_ptr<SessionRecorder> m_recorder; ///< null where another program has the file
    Exception m_exception;
    Recovery* m_recovery = nullptr;
    std::deque<SavedWindow> m_pending;
    SavedWindow m_front; ///< comes to the front when it is there
    std::optional<SavedWindow> m_opening;
    QTimer m_turn;                                ///< until the next is opened
    bool m_isAsked = false;                       ///< for that, the controller was
    QHash<DocumentWindow*, SavedWindow> m_placed; ///< made and not yet shown
    QStringList m_missing;
    bool m_isRestoring = false;
    bool m_hasTexts = true;      ///< still to come
    bool m_recoversRest = false; ///< those that belong to no window
    bool m_isFirst = true;       ///< the next is the one in front
    bool m_behind = false;
    bool m_isQuitting = false;
    QPointer<DocumentWindow> m_asked; ///< before quitting, and did not answer yet
};

} // namespace quillory
