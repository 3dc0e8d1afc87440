#pragma once

#include "app/Handover.h"

#include <QObject>
#include <QPointer>
#include <memory>

class QSocketNotifier;

namespace quillory {

class DocumentController;
class DocumentWindow;

/// Takes what later starts of the program hand over, and opens it. Tells those that wait when the
/// windows of their files were closed.
class HandoverServer : public QObject
{
    Q_OBJECT

public:
    /// \a listeningSocket does not block, and belongs to this from now on; below 0 nobody comes.
    HandoverServer(int listeningSocket, DocumentController& controller, QObject* parent = nullptr);
    ~HandoverServer() override;

    /// Some other start of the program waits until \a window is closed.
    bool isWaitedFor(const DocumentWindow& window) const;

private:
    /// Another start of the program.
    struct Start
    {
        int descriptor;
        std::unique_ptr<QSocketNotifier> notifier;
        QByteArray received;
        bool waits = false;
        bool failed = false;
        QStringList unopened; ///< paths of the files whose windows are still to come
        std::vector<QPointer<DocumentWindow>> windows;
    };

    void accept();
    void read(Start& start);
    void take(Start& start, const Handover& handover);
    void noteOpened(DocumentWindow* window);
    void answerWaiting();
    void drop(const Start& start);

    DocumentController& m_controller;
    int m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::vector<std::unique_ptr<Start>> m_starts;
};

} // namespace quillory
