#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

namespace quillory {

class DocumentWindow;
struct SaveResult;

/// Saves a document that has a file a moment after the typing paused, when its window loses the
/// keyboard and before it closes; but only where nothing else becomes of it than the user typed:
/// nothing is asked, no other form is written, and what the file held before is in the version
/// store. What cannot be saved so stays edited, and the user is asked as ever.
class Autosave : public QObject
{
    Q_OBJECT

public:
    // All in milliseconds.
    static constexpr int pause = 2500;         ///< without an edit, before a text is saved
    static constexpr int longestPause = 60000; ///< where saving takes long, the pause is longer
    static constexpr int afterFailure = 30000;
    /// While a text is edited and saved on and on, one version of it is kept in so long a time.
    static constexpr int versionInterval = 300000;

    /// A child of \a window.
    explicit Autosave(DocumentWindow& window);

    /// Saves, when it may, and says when that is over.
    void saveBefore(const std::function<void()>& then);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isOn() const;
    bool maySave() const;
    void schedule();
    void save(const std::function<void()>& then = {});
    void take(const SaveResult& result);
    int pauseNow() const;

    DocumentWindow& m_window;
    QTimer m_timer;
    QElapsedTimer m_saving;  ///< since the last one began
    qint64 m_lastSaving = 0; ///< how long that took, in milliseconds
    QElapsedTimer m_sinceVersion;
    bool m_needsVersion = true; ///< what the file holds was not written by this
    bool m_failed = false;      ///< the last time; it was told
};

} // namespace quillory
