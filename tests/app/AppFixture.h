#pragma once

#include "ScriptedQuestions.h"

#include "app/DocumentController.h"
#include "app/MessageArea.h"
#include "document/DocumentEnvironment.h"
#include "document/FileTransfer.h"
#include "document/RecoveryStore.h"
#include "document/SystemFileOps.h"
#include "document/VersionStore.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QThread>
#include <atomic>
#include <gtest/gtest.h>

namespace quillory::test {

/// A file system that can be full, slow, and on more than one device.
class SmallDisk : public SystemFileOps
{
public:
    std::atomic_bool full = false;
    std::atomic_bool held = false;    ///< writing waits until it is let go, but on the main thread
    std::atomic_bool isSplit = false; ///< each folder is a device of its own

protected:
    FileStatus tryRename(const QByteArray& from, const QByteArray& to, Replacing replacing) override
    {
        return isSplit && folderOf(from) != folderOf(to)
                   ? FileStatus::failed(EXDEV)
                   : SystemFileOps::tryRename(from, to, replacing);
    }
    FileResult<qint64> tryWrite(int descriptor, const char* bytes, qint64 size,
                                qint64 offset) override
    {
        while (held && QThread::currentThread() != qApp->thread())
            QThread::msleep(1);
        return full ? FileResult<qint64>::failed(ENOSPC)
                    : SystemFileOps::tryWrite(descriptor, bytes, size, offset);
    }
};

/// The whole program but its dialogs, over a folder of its own.
class AppFixture : public ::testing::Test
{
protected:
    AppFixture();

    QString path(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }
    QString write(const char* name, const QByteArray& bytes) const;
    static QByteArray bytesOf(const QString& path);

    /// Opens a file as the user would, and waits for its window.
    DocumentWindow& open(const QString& path);
    DocumentWindow& openNew();
    static QString textOf(const DocumentWindow& window);

    /// Keys go to the text: "Ctrl+Z", or 'typed' in quotes.
    static void press(DocumentWindow& window, const QStringList& keys);
    /// Ctrl+S, and waits until the save is over.
    static void save(DocumentWindow& window);
    static void waitUntilIdle(DocumentWindow& window);
    /// Presses the button of a message whose label begins so, mnemonics aside; false without one.
    static bool pressWayOut(DocumentWindow& window, const QString& label);
    /// Chooses a command of the menus by its name without mnemonics: "File/Save As…".
    static void choose(DocumentWindow& window, const QString& command);
    static QAction* command(DocumentWindow& window, const QString& command);

    static QString message(const DocumentWindow& window, MessageArea::Subject subject)
    {
        return window.messages().text(subject);
    }

    QTemporaryDir folder;
    ApplicationFolders folders;
    UserDefaults defaults{folder.filePath(QStringLiteral("Quillory.conf"))};
    NotificationCenter notifications;
    SmallDisk disk;
    RecoveryStore recovery{disk, folder.filePath(QStringLiteral("recovery"))};
    VersionStore versions{disk, folder.filePath(QStringLiteral("versions"))};
    QSettings state{folder.filePath(QStringLiteral("Windows.conf")), QSettings::IniFormat};
    DocumentEnvironment environment{folders, defaults, notifications, disk, recovery, &versions};
    ScriptedQuestions questions;
    DocumentController controller{environment, questions, state};
};

} // namespace quillory::test
