#pragma once

#include "document/Document.h"
#include "document/DocumentType.h"
#include "document/RecoveryStore.h"
#include "document/SystemFileOps.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/Background.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "support/Folders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory::test {

inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

/// A folder of its own and everything that documents need, with the shipped resources.
struct DocumentFixture : ::testing::Test
{
    ~DocumentFixture() override { backgroundPool().waitForDone(); }

    QTemporaryDir folder;
    ApplicationFolders folders = foldersIn(folder.path());
    UserDefaults defaults{folder.filePath(QStringLiteral("Quillory.conf"))};
    NotificationCenter notifications;
    SystemFileOps ops;
    RecoveryStore recovery{ops, folder.filePath(QStringLiteral("recovery"))};
    DocumentEnvironment environment{folders, defaults, notifications, ops, recovery};

    static ApplicationFolders foldersIn(const QString& path)
    {
        ApplicationFolders folders;
        folders.applicationSupport = path + QStringLiteral("/support");
        folders.resources = QStringLiteral(QUILLORY_SOURCE_DIR "/resources");
        return folders;
    }

    QString file(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }

    QString write(const char* name, const QByteArray& bytes) const
    {
        QFile target(file(name));
        EXPECT_TRUE(target.open(QFile::WriteOnly) && target.write(bytes) == bytes.size());
        return target.fileName();
    }

    /// A document that was read from \a path and opened; null when reading answered no.
    std::unique_ptr<Document> open(const QString& path)
    {
        auto document = std::make_unique<Document>(environment);
        if (!document->readFromURL(path, DocumentType::ofFile(path)))
            return nullptr;
        document->windowControllerDidLoadNib(nullptr);
        return document;
    }

    std::unique_ptr<Document> openNew()
    {
        auto document = std::make_unique<Document>(environment);
        document->windowControllerDidLoadNib(nullptr);
        return document;
    }

    static std::string textOf(const Document& document)
    {
        return document.completeString().string().toStdString();
    }
};

} // namespace quillory::test
