#pragma once

#include "document/FileIdentity.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

namespace quillory {

/// Watches one file for what other programs do to it. What the kernel tells is looked into on
/// another thread, a moment later: a program that saves may write in several steps, or put another
/// file in the place of the old one.
class FileWatch : public QObject
{
    Q_OBJECT

public:
    /// For a file that is not there, wait so long for it to come back before gone() or renamed().
    static constexpr int patience = 400; ///< milliseconds

    explicit FileWatch(QObject* parent = nullptr);

    /// From now on watches the file at \a path, which was as in \a known when the document was last
    /// read or saved. No file is watched at an empty path.
    void watch(const QString& path, const FileIdentity& known);
    /// Looks at the file now.
    void look();

Q_SIGNALS:
    /// The file holds something else; once for each state of it.
    void changed();
    /// After gone(), a file is there that holds what the document knows of.
    void restored();
    /// The file is at \a path now, in the same folder.
    void renamed(const QString& path);
    /// There is no file any more at the path; once, until one comes back.
    void gone();

private:
    struct Finding;
    static Finding examine(const QString& path, const FileIdentity& known);
    void schedule(int milliseconds);
    void take(const Finding& finding);
    void rewatch();

    QString m_path;
    FileIdentity m_known; ///< the state that the document knows of, or was last told of
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
    int m_generation = 0; ///< of the path and the known state
    bool m_missing = false;
    bool m_toldGone = false;
    bool m_looking = false;
    bool m_lookAgain = false;
};

} // namespace quillory
