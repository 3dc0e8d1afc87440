#pragma once

#include "document/SavedSession.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <functional>

namespace quillory {

class DocumentController;
class DocumentWindow;

/// Knows what every document window is like, for the next start to bring back, and says so a moment
/// after one of them changed. A window is looked at again only after something happened to it.
class SessionRecorder : public QObject
{
    Q_OBJECT

public:
    /// Changes within this time are told of together.
    static constexpr std::chrono::milliseconds delay{1000};
    /// The same for the caret and what is in sight, which typing changes all the time.
    static constexpr std::chrono::milliseconds delayOfPlaces{5000};

    explicit SessionRecorder(DocumentController& controller);

    /// As they are now, from the one in front to the one at the back, without those for which
    /// \a isLeftOut answers true.
    using Exception = std::function<bool(const DocumentWindow& window)>;
    std::vector<SavedWindow> session(const Exception& isLeftOut);

    /// What \a window was when it was brought back, which may know more than can be seen of it.
    void note(DocumentWindow& window, const SavedWindow& saved) { m_known.insert(&window, saved); }

    /// While set, a window that is closed stays in the session as it was at last.
    void setKeepsClosed(bool keeps);
    /// But not \a window.
    void letGo(DocumentWindow& window) { m_letGo.insert(&window); }

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(DocumentWindow* window);
    void noteChange(DocumentWindow* window, std::chrono::milliseconds within = delay);
    void noteClosed(DocumentWindow* window);
    void tellWithin(std::chrono::milliseconds time);
    const SavedWindow& look(DocumentWindow* window);

    DocumentController& m_controller;
    std::vector<DocumentWindow*> m_order; ///< the one that was active last comes first
    QHash<DocumentWindow*, SavedWindow> m_known;
    QSet<DocumentWindow*> m_changed;
    std::vector<SavedWindow> m_closed;
    bool m_keepsClosed = false;
    QSet<DocumentWindow*> m_letGo; ///< when they are closed
    QTimer m_timer;
};

} // namespace quillory
