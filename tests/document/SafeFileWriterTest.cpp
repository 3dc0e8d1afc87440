#include "document/SafeFileWriter.h"

#include "document/FileTransfer.h"
#include "document/SaveScenario.h"
#include "document/SystemFileOps.h"

#include <QDir>
#include <QTemporaryDir>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillory {

namespace {

using Outcome = SafeWriteResult::Outcome;

class SafeFileWriterTest : public testing::Test
{
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }
    QString file() const { return path(QStringLiteral("file.txt")); }

    SafeWriteRequest request(const QByteArray& bytes) const
    {
        SafeWriteRequest request;
        request.path = file();
        request.source = sourceOf(bytes);
        return request;
    }
    SafeWriteResult save(const SafeWriteRequest& request)
    {
        return SafeFileWriter(m_ops, m_store).write(request);
    }
    qsizetype recordCount() { return m_store.records()->size(); }

    static struct stat statusOf(const QString& path)
    {
        struct stat status = {};
        ::stat(QFile::encodeName(path).constData(), &status);
        return status;
    }

    QTemporaryDir m_folder;
    SystemFileOps m_ops;
    RecoveryStore m_store{m_ops, m_folder.filePath(QStringLiteral("Recovery"))};
};

TEST_F(SafeFileWriterTest, NewFilesHaveTheModeThatTheUmaskLeaves)
{
    const mode_t before = umask(027);
    EXPECT_TRUE(save(request("text")).isWritten());
    umask(before);
    EXPECT_EQ(statusOf(file()).st_mode & 07777, mode_t(0640));
}

TEST_F(SafeFileWriterTest, EmptyAndLargeTextsAreWritten)
{
    for (const QByteArray& bytes : {QByteArray(), QByteArray(3'000'000, 'x'), QByteArray("x")}) {
        EXPECT_TRUE(save(request(bytes)).isWritten());
        EXPECT_EQ(contentOf(file()), bytes);
    }
}

TEST_F(SafeFileWriterTest, SymbolicLinkToNothingMakesWhatItLeadsTo)
{
    ASSERT_TRUE(QFile::link(QStringLiteral("missing.txt"), file()));
    EXPECT_TRUE(save(request("text")).isWritten());
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    EXPECT_EQ(contentOf(path(QStringLiteral("missing.txt"))), "text");
}

TEST_F(SafeFileWriterTest, RefusesWhatIsNoFile)
{
    struct Case
    {
        int error;
        std::function<bool()> make;
    };
    const QByteArray encoded = QFile::encodeName(file());
    const Case cases[] = {
        {EISDIR, [&] { return QDir().mkdir(file()); }},
        {ELOOP, [&] { return QFile::link(QStringLiteral("file.txt"), file()); }},
        {ENXIO, [&] { return QFile::link(QStringLiteral("/dev/full"), file()); }},
        {ENXIO, [&] { return mkfifo(encoded.constData(), 0600) == 0; }},
        {ENOENT, [&] { return QFile::link(QStringLiteral("nowhere/file"), file()); }},
        {ENOTDIR, [&] { return QFile::link(QStringLiteral("plain/file"), file()); }},
    };
    writeFile(path(QStringLiteral("plain")), "plain");
    for (const Case& refused : cases) {
        ASSERT_TRUE(refused.make());
        const SafeWriteResult result = save(request("text"));
        EXPECT_EQ(result.outcome, Outcome::Failed);
        EXPECT_EQ(result.error.code, refused.error) << qPrintable(result.message);
        EXPECT_EQ(result.disk, DiskState::Unchanged);
        EXPECT_TRUE(result.message.contains(QStringLiteral("“file.txt” was not saved: ")));
        EXPECT_FALSE(result.message.contains(QLatin1Char('%')));
        ASSERT_EQ(remove(encoded.constData()), 0);
    }
}

TEST_F(SafeFileWriterTest, FailedTextsAreKeptUntilASaveGoesWell)
{
    ASSERT_TRUE(QDir().mkdir(file()));
    SafeWriteRequest again = request("first");
    again.recoveryRecord = save(again).recoveryRecord;
    again.source = sourceOf("second");
    EXPECT_EQ(save(again).recoveryRecord, again.recoveryRecord);
    ASSERT_EQ(recordCount(), 1);
    EXPECT_EQ(m_store.records()->first().size.value(), 6);
    EXPECT_EQ(m_store.records()->first().entry.path, file());

    ASSERT_TRUE(QDir().rmdir(file()));
    const SafeWriteResult result = save(again);
    EXPECT_TRUE(result.isWritten());
    EXPECT_TRUE(result.recoveryRecord.isEmpty());
    EXPECT_EQ(recordCount(), 0);
}

TEST_F(SafeFileWriterTest, LeavesAFileThatAnotherProgramChanged)
{
    writeFile(file(), "mine");
    SafeWriteRequest next = request("mine, edited");
    next.expected = FileIdentity::of(statusOf(file()));
    writeFile(file(), "theirs");
    const SafeWriteResult refused = save(next);
    EXPECT_EQ(refused.outcome, Outcome::ChangedByOther);
    EXPECT_TRUE(refused.message.contains(QStringLiteral("file.txt")));
    EXPECT_EQ(contentOf(file()), "theirs");

    next.expected.reset();
    EXPECT_TRUE(save(next).isWritten());
    EXPECT_EQ(contentOf(file()), "mine, edited");
}

TEST_F(SafeFileWriterTest, ItsOwnSavesAreNoChangeByAnother)
{
    for (const bool hardLinked : {false, true}) {
        SafeWriteRequest next = request("one");
        next.expected = save(next).identity;
        if (hardLinked) {
            ASSERT_TRUE(link(QFile::encodeName(file()).constData(),
                             QFile::encodeName(path(QStringLiteral("other"))).constData()) == 0);
        }
        for (const char* bytes : {"two", "three"}) {
            next.source = sourceOf(bytes);
            const SafeWriteResult result = save(next);
            EXPECT_TRUE(result.isWritten());
            next.expected = result.identity;
        }
    }
}

TEST_F(SafeFileWriterTest, TheDigestTellsATouchedFileFromAChangedOne)
{
    writeFile(file(), "mine");
    SafeWriteRequest next = request("edited");
    next.expected = FileIdentity::of(statusOf(file()));
    next.expected->digest = summaryOf(sourceOf("mine"))->digest;
    next.expected->modifiedNanos -= 1;
    const SafeWriteResult result = save(next);
    EXPECT_TRUE(result.isWritten());
    EXPECT_EQ(result.identity->digest, summaryOf(sourceOf("edited"))->digest);

    next.expected = result.identity;
    writeFile(file(), "EDITED");
    next.expected->modifiedNanos -= 1;
    EXPECT_EQ(save(next).outcome, Outcome::ChangedByOther);
}

TEST_F(SafeFileWriterTest, AFileThatAppearsMeanwhileIsLeftAlone)
{
    SafeWriteRequest next = request("mine");
    int runs = 0;
    next.source = [this, &runs](const ByteSink& sink) {
        if (++runs == 2)
            writeFile(file(), "theirs");
        return sink("mine");
    };
    EXPECT_EQ(save(next).outcome, Outcome::ChangedByOther);
    EXPECT_EQ(contentOf(file()), "theirs");
}

TEST_F(SafeFileWriterTest, AFileThatChangesMeanwhileIsLeftAlone)
{
    writeFile(file(), "old");
    for (const bool hardLinked : {false, true}) {
        if (hardLinked) {
            ASSERT_TRUE(link(QFile::encodeName(file()).constData(),
                             QFile::encodeName(path(QStringLiteral("other"))).constData()) == 0);
        }
        SafeWriteRequest next = request("mine");
        next.expected = FileIdentity::of(statusOf(file()));
        int runs = 0;
        next.source = [&](const ByteSink& sink) {
            if (++runs == 2)
                writeFile(file(), hardLinked ? "theirs again" : "theirs");
            return sink("mine");
        };
        EXPECT_EQ(save(next).outcome, Outcome::ChangedByOther);
        EXPECT_EQ(contentOf(file()), hardLinked ? "theirs again" : "theirs");
    }
}

TEST_F(SafeFileWriterTest, ASourceWithoutBytesChangesNothing)
{
    writeFile(file(), "old");
    SafeWriteRequest next = request({});
    next.source = [](const ByteSink& sink) { return sink("half of it") && false; };
    const SafeWriteResult result = save(next);
    EXPECT_EQ(result.error.code, ECANCELED);
    EXPECT_EQ(contentOf(file()), "old");
    EXPECT_EQ(recordCount(), 0);
}

TEST_F(SafeFileWriterTest, SetsAndRemovesAttributes)
{
    writeFile(file(), "old");
    const QByteArray encoded = QFile::encodeName(file());
    if (setxattr(encoded.constData(), "user.gone", "x", 1, 0) != 0)
        GTEST_SKIP() << "the file system has no extended attributes";
    SafeWriteRequest next = request("new");
    next.attributes = {{"user.gone", ""}, {"user.encoding", "utf-8"}, {"user.absent", ""}};
    EXPECT_TRUE(save(next).isWritten());
    char value[16];
    EXPECT_EQ(getxattr(encoded.constData(), "user.encoding", value, sizeof value), 5);
    EXPECT_EQ(getxattr(encoded.constData(), "user.gone", value, sizeof value), -1);
}

TEST_F(SafeFileWriterTest, KnowsWriteProtectedFiles)
{
    EXPECT_FALSE(SafeFileWriter::isWriteProtected(m_ops, file()));
    writeFile(file(), "text");
    EXPECT_FALSE(SafeFileWriter::isWriteProtected(m_ops, file()));
    ASSERT_TRUE(QFile::link(QStringLiteral("file.txt"), path(QStringLiteral("link"))));
    ASSERT_EQ(chmod(QFile::encodeName(file()).constData(), 0444), 0);
    EXPECT_TRUE(SafeFileWriter::isWriteProtected(m_ops, path(QStringLiteral("link"))));
    if (geteuid() == 0) {
        ASSERT_EQ(chmod(QFile::encodeName(file()).constData(), 0644), 0);
        ASSERT_EQ(chmod(QFile::encodeName(m_folder.path()).constData(), 0755), 0);
        const Unprivileged rights;
        EXPECT_TRUE(SafeFileWriter::isWriteProtected(m_ops, file())) << "another user's";
    }
}

TEST_F(SafeFileWriterTest, WhatCannotBeKeptIsNotOverwritten)
{
    writeFile(file(), "old");
    ASSERT_TRUE(link(QFile::encodeName(file()).constData(),
                     QFile::encodeName(path(QStringLiteral("other"))).constData()) == 0);
    const struct stat before = statusOf(file());
    RecoveryStore store(m_ops, file() + QStringLiteral("/Recovery"));
    SafeWriteRequest next = request(QByteArray(1'000'000, 'x'));
    next.expected = FileIdentity::of(before);
    const SafeWriteResult result = SafeFileWriter(m_ops, store).write(next);
    EXPECT_EQ(result.error.code, ENOTDIR);
    EXPECT_EQ(result.error.step, FileStep::StoreRecovery);
    EXPECT_TRUE(result.message.contains(store.folder()));
    EXPECT_EQ(contentOf(file()), "old");
    EXPECT_EQ(statusOf(file()).st_blocks, before.st_blocks) << "room stays reserved";

    next.expected = result.identity;
    EXPECT_TRUE(save(next).isWritten()) << "reserving room is no change by another program";
}

TEST_F(SafeFileWriterTest, ALimitOnFileSizesLeavesTheOldFile)
{
    const QByteArray big(200'000, 'x');
    for (const bool hardLinked : {false, true}) {
        writeFile(file(), "old");
        if (hardLinked) {
            ASSERT_TRUE(link(QFile::encodeName(file()).constData(),
                             QFile::encodeName(path(QStringLiteral("other"))).constData()) == 0);
        }
        struct rlimit before = {};
        ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        const struct rlimit small = {100'000, before.rlim_max};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
        const SafeWriteResult result = save(request(big));
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        EXPECT_EQ(result.error.code, EFBIG) << qPrintable(result.message);
        EXPECT_EQ(result.disk, DiskState::Unchanged);
        EXPECT_EQ(contentOf(file()), "old");
    }
}

TEST_F(SafeFileWriterTest, AFullDeviceLeavesTheOldFile)
{
    const QString mountPoint = path(QStringLiteral("small"));
    ASSERT_TRUE(QDir().mkdir(mountPoint));
    const QByteArray encoded = QFile::encodeName(mountPoint);
    if (mount("none", encoded.constData(), "tmpfs", 0, "size=256k") != 0)
        GTEST_SKIP() << "mounting a small file system takes root's rights";
    for (const bool hardLinked : {false, true}) {
        SafeWriteRequest next = request(QByteArray(400'000, 'x'));
        next.path = mountPoint + QStringLiteral("/file.txt");
        writeFile(next.path, "old");
        if (hardLinked) {
            EXPECT_TRUE(
                link(QFile::encodeName(next.path).constData(),
                     QFile::encodeName(mountPoint + QStringLiteral("/other")).constData()) == 0);
        }
        const SafeWriteResult result = save(next);
        EXPECT_EQ(result.error.code, ENOSPC) << qPrintable(result.message);
        EXPECT_EQ(result.disk, DiskState::Unchanged);
        EXPECT_EQ(contentOf(next.path), "old");
        EXPECT_FALSE(result.recoveryRecord.isEmpty()) << "the other device has room";
        EXPECT_TRUE(result.message.contains(QStringLiteral("“file.txt” was not saved: there is no "
                                                           "space left")));
        // What was reserved in vain is free again.
        writeFile(mountPoint + QStringLiteral("/filler"), QByteArray(200'000, 'f'));
        EXPECT_EQ(QFileInfo(mountPoint + QStringLiteral("/filler")).size(), 200'000);
        QFile::remove(mountPoint + QStringLiteral("/filler"));
    }
    EXPECT_EQ(umount2(encoded.constData(), MNT_DETACH), 0);
}

} // namespace

} // namespace quillory
