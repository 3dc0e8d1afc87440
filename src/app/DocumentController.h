#pragma once

#include "app/DocumentLoader.h"
#include "app/DocumentWindow.h"
#include "app/PreferencesController.h"
#include "app/RecentDocuments.h"
#include "app/StartOptions.h"
#include "app/ThemeFollowing.h"
#include "editing/spelling/EnchantEngine.h"
#include "editing/spelling/SpellChecker.h"

#include <QObject>
#include <vector>

class QSettings;

namespace quillory {

class WindowRestoration;

/// Opens documents, each in a window of its own, and knows the windows that are open.
class DocumentController : public QObject
{
    Q_OBJECT

public:
    /// \a state keeps the recent files and the windows' size from one session to the next.
    DocumentController(const DocumentEnvironment& environment, UserQuestions& questions,
                       QSettings& state,
                       const SpellingEngineSource& spellingEngine = makeEnchantEngine);
    ~DocumentController() override;

    DocumentWindow* newDocument();
    /// Opens each target, or raises the window that shows it; an untouched new document makes room.
    /// What cannot be opened is told in \a window, or in a dialog of its own, and on standard
    /// error.
    void open(const std::vector<OpenTarget>& targets, DocumentWindow* window = nullptr);
    /// Opens a window for \a result, which is not what stands on the disk.
    DocumentWindow& restore(ReadResult result, int untitledNumber);
    void askForFiles(DocumentWindow& window);
    /// Closes all windows, asking for each that was edited and will not come back with the next
    /// start; any of them may keep the rest open.
    void quit();
    /// The same with windows that are not to come back.
    void quitForGood();
    /// Brings windows back, and outlives this or is reset.
    void setRestoration(WindowRestoration* restoration) { m_restoration = restoration; }

    /// In the order in which they were opened.
    const std::vector<DocumentWindow*>& windows() const { return m_windows; }
    /// Null where none does.
    DocumentWindow* windowShowing(const QString& path) const;
    /// Whether the file is being read and has no window yet.
    bool isOpening(const QString& path) const;
    void raise(DocumentWindow& window);
    /// Raises the window \a steps after \a window in windows(), in a circle.
    void raiseNeighbour(DocumentWindow& window, int steps);
    /// Says that all is over where it is.
    void settle();
    void rememberSize(const DocumentWindow& window);

    DocumentLoader& loader() { return *m_loader; }
    SpellChecker& spellChecker() { return m_spellChecker; }
    PreferencesController& preferences() { return m_preferences; }

    QStringList recentDocuments() const { return m_recent.paths(); }
    void clearRecentDocuments() { m_recent.clear(); }
    void noteSaved(const QString& path) { m_recent.note(path); }

    /// True when something that was asked for could not be opened.
    bool hasFailed() const { return m_failed; }
    /// True when some document was there as a whole.
    bool hasOpened() const { return m_opened; }

Q_SIGNALS:
    /// It is about to be shown.
    void windowMade(quillory::DocumentWindow* window);
    void windowOpened(quillory::DocumentWindow* window);
    /// A window was closed, or something that was asked for has been opened or could not be.
    void settled();
    /// No window is open, none is about to be, and nothing is left to tell.
    void finished();

private:
    void openOne(const OpenTarget& target, DocumentWindow* window);
    void openNewFile(const QString& path, const OpenTarget& target, DocumentWindow* window);
    void take(ReadResult result, const OpenTarget& target, DocumentWindow* window);
    void openLarge(const std::shared_ptr<GradualRead>& reading, const OpenTarget& target,
                   DocumentWindow* window);
    void giveUp(DocumentWindow& loading, std::optional<int> untitled, const QString& message);
    DocumentWindow* newUntitled(int number);
    DocumentWindow* show(std::unique_ptr<Document> document, DocumentWindow* inPlaceOf);
    void fail(const QString& message, DocumentWindow* window);
    void closeAll();

    const DocumentEnvironment& m_environment;
    UserQuestions& m_questions;
    QSettings& m_state;
    RecentDocuments m_recent;
    SpellChecker m_spellChecker;
    PreferencesController m_preferences;
    ThemeFollowing m_themeFollowing;
    std::unique_ptr<DocumentLoader> m_loader; ///< goes before the windows
    std::vector<DocumentWindow*> m_windows;
    WindowRestoration* m_restoration = nullptr;
    QStringList m_reading; ///< canonical paths of the files that are being read
    int m_underway = 0;    ///< readings and dialogs that must end before the program may
    int m_lastUntitled = 0;
    bool m_failed = false;
    bool m_opened = false;
};

} // namespace quillory
