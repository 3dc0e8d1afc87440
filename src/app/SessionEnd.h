#pragma once

#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>

class QSocketNotifier;

namespace quillory {

class DocumentController;

/// Ends the program without a question when the system wants it to end: at SIGTERM, SIGINT and
/// SIGHUP, and when the desktop's session ends. What is not saved stays in the journals, for the
/// next start.
class SessionEnd : public QObject
{
    Q_OBJECT

public:
    /// One at a time.
    explicit SessionEnd(DocumentController& controller);
    ~SessionEnd() override;

Q_SIGNALS:
    /// The program ends soon, or may: what the next start is to know has to be written now. All
    /// edits are on the device.
    void stateWanted();

protected:
    /// Sees the application's events.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void prepare();
    void end(int status);
    void leaveWhenSaved();
    void leave();

    DocumentController& m_controller;
    std::optional<int> m_status; ///< with which the program ends soon
    QTimer m_patience;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quillory
