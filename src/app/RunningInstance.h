#pragma once

#include <QString>

namespace quillory {

/// Decides which start of the program is the one that runs, and hands over to it. Waits for it, and
/// needs no application object, so that a start that hands over is over in a few milliseconds.
///
/// The one that runs holds a lock, which goes with it however it ends, and listens on a socket
/// beside. Both lie in a folder that nobody else can enter.
class RunningInstance
{
public:
    /// \a folder is made, for this user alone, where it is not there. \a screen: programs on
    /// different screens do not know of each other. Where the folder cannot be had, or its path is
    /// too long for a socket, this one runs, and nobody hands over to it.
    RunningInstance(const QString& folder, const QString& screen);
    ~RunningInstance();
    Q_DISABLE_COPY_MOVE(RunningInstance)

    /// Whether this start is to run: no other one does.
    bool isThis() const { return m_isThis; }
    /// Asks again, after the other one has not taken what was handed over.
    void claim();

    /// The socket on which others hand over, or -1; the caller has it from now on.
    int takeListeningSocket();
    /// Leaves the lock to the process that was forked off this one.
    void leaveToChild();

    enum class Delivery
    {
        Done,      ///< what it was to wait for included
        NotOpened, ///< the same, but some file could not be opened
        NotTaken,  ///< it ends, or does not answer within 10 s
        Lost       ///< it ended before what was waited for
    };
    /// Hands \a request (see Handover) over to the one that runs.
    Delivery deliver(const QByteArray& request, bool waits) const;

private:
    int connectToOther() const;

    QByteArray m_socketPath;
    QByteArray m_lockPath;
    bool m_isThis = true;
    int m_lock = -1;
    int m_listening = -1;
};

} // namespace quillory
