#pragma once

#include "document/SavedSession.h"

#include <QObject>
#include <memory>
#include <mutex>
#include <optional>

namespace quillory {

/// The file that keeps the windows of the session for the next start. It is replaced as a whole, on
/// another thread, so that it is always either the old one or the new one.
///
/// One program has it at a time: the one that holds the lock beside it, which goes with the program
/// however it ends.
class SessionFile : public QObject
{
    Q_OBJECT

public:
    /// \a path: neither the file nor its folder need exist.
    explicit SessionFile(QString path);
    ~SessionFile() override;

    /// Whether this program has the file: it is the first to ask.
    bool claim();
    bool isClaimed() const { return m_lock >= 0; }

    /// No windows where there is no file. One that is damaged is told of on standard error, and put
    /// aside under the name with ".damaged" at its end.
    std::vector<SavedWindow> read() const;

    /// Keeps \a windows. Of several that come while one is being written, the last one is.
    void write(const std::vector<SavedWindow>& windows);
    bool isWriting() const { return m_writing; }
    /// The same, before it returns; for the end of the program.
    void writeAtOnce(const std::vector<SavedWindow>& windows);
    /// There is nothing to bring back any more.
    void remove();

Q_SIGNALS:
    /// All that was to be kept is, or could not be, which is told on standard error.
    void written();

private:
    /// The newest of what was asked for is what stays, whichever thread comes first.
    struct Order
    {
        std::mutex mutex;
        quint64 done = 0;
    };

    QString m_path;
    std::shared_ptr<Order> m_order = std::make_shared<Order>();
    quint64 m_asked = 0;
    int m_lock = -1;
    bool m_writing = false;
    std::optional<std::vector<SavedWindow>> m_next;
};

} // namespace quillory
