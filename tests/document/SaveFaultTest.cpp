// Every save, with every call to the file system failing in turn, once and for good: what is on
// disk afterwards is all old or all new, nothing else about the file has changed, the new text is
// somewhere, and the user is told.

#include "document/FaultyFileOps.h"
#include "document/SafeFileWriter.h"
#include "document/SaveScenario.h"
#include "document/SystemFileOps.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <optional>
#include <unistd.h>

namespace quillory {

namespace {

const QByteArray newContent = QByteArray(2500, 'n') + "\nnew\n";

/// The first two kilobytes of the file, so that a sparse one costs no more than others.
QByteArray headOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(4096) : QByteArrayLiteral("(no file)");
}

/// Where thousands of saves need not wait for a disk.
QString fastPlace()
{
    const QFileInfo memory(QStringLiteral("/dev/shm"));
    return memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath();
}

/// A scenario set up on disk, ready for one save.
class SaveRun
{
public:
    /// Made below \a place.
    SaveRun(const SaveScenario& scenario, const QString& place)
    {
        if (scenario.by != SaveScenario::By::Root)
            m_rights.emplace();
        m_root.emplace(place + QStringLiteral("/quillory-save-XXXXXX"));
        QDir(m_root->path()).mkdir(QStringLiteral("folder"));
        if (scenario.by == SaveScenario::By::UserAfterRoot)
            m_rights.reset();
        m_ready = scenario.prepare(folder());
        if (scenario.by == SaveScenario::By::UserAfterRoot)
            m_rights.emplace();
        m_facts = factsOf(folder());
        m_old = headOf(path());
    }
    SaveRun(const SaveRun&) = delete;
    SaveRun& operator=(const SaveRun&) = delete;
    ~SaveRun()
    {
        m_rights.reset();
        ::chmod(QFile::encodeName(folder()).constData(), 0755);
    }

    bool isReady() const { return m_ready; }
    QString folder() const { return m_root->filePath(QStringLiteral("folder")); }
    QString path() const { return folder() + QStringLiteral("/file.txt"); }
    QString storeFolder() const { return m_root->filePath(QStringLiteral("state/Recovery")); }
    const QByteArray& factsBefore() const { return m_facts; }
    const QByteArray& oldBytes() const { return m_old; }

    SafeWriteResult save(FileOps& ops)
    {
        RecoveryStore store(ops, storeFolder());
        SafeWriteRequest request;
        request.path = path();
        request.source = sourceOf(newContent);
        return SafeFileWriter(ops, store).write(request);
    }

    /// The bytes of all whole records, of texts or of previous versions.
    QByteArrayList kept(bool previous) const
    {
        SystemFileOps ops;
        RecoveryStore store(ops, storeFolder());
        QByteArrayList result;
        const auto records = store.records();
        for (const RecoveryRecord& record : *records) {
            QByteArray bytes;
            const bool whole = store.bytes(record.name)([&bytes](QByteArrayView piece) {
                bytes.append(piece);
                return true;
            });
            if (whole && record.isPrevious == previous)
                result.append(bytes);
        }
        return result;
    }

    int strayFiles() const
    {
        const QStringList stray{QStringLiteral("*.tmp")};
        return int(QDir(folder()).entryList(stray, QDir::AllEntries | QDir::Hidden).size() +
                   QDir(storeFolder()).entryList(stray, QDir::AllEntries | QDir::Hidden).size());
    }

private:
    std::optional<Unprivileged> m_rights;
    std::optional<QTemporaryDir> m_root;
    bool m_ready = false;
    QByteArray m_facts;
    QByteArray m_old;
};

class SaveFaultTest : public testing::TestWithParam<SaveScenario>
{
protected:
    void SetUp() override
    {
        if (GetParam().by != SaveScenario::By::User && geteuid() != 0)
            GTEST_SKIP() << "only root can make this scenario";
    }

    static void check(const SaveRun& run, const SafeWriteResult& result, bool persistent)
    {
        const QByteArray bytes = headOf(run.path());
        const bool isOld = bytes == run.oldBytes();
        const bool isNew = bytes == newContent;
        switch (result.disk) {
        case DiskState::Unchanged:
            EXPECT_TRUE(isOld);
            break;
        case DiskState::New:
        case DiskState::Unconfirmed:
            EXPECT_TRUE(isNew);
            break;
        case DiskState::Damaged:
            EXPECT_TRUE(GetParam().inPlace);
            EXPECT_TRUE(persistent) << "one fault must not be enough";
            EXPECT_TRUE(run.kept(true).contains(run.oldBytes()));
            EXPECT_TRUE(run.kept(false).contains(newContent));
            break;
        }
        if (!persistent && run.factsBefore().contains("/file.txt")) {
            EXPECT_EQ(factsOf(run.folder()), run.factsBefore());
        }
        EXPECT_TRUE(persistent || run.strayFiles() == 0) << "a file was left behind";

        EXPECT_EQ(result.isWritten(), result.disk == DiskState::New);
        EXPECT_EQ(result.isWritten(), result.message.isEmpty());
        if (!result.isWritten()) {
            EXPECT_TRUE(result.message.contains(QStringLiteral("file.txt")));
            EXPECT_NE(result.error.code, 0);
            const QByteArrayList kept = run.kept(false);
            EXPECT_TRUE(result.recoveryRecord.isEmpty() || kept.contains(newContent));
            EXPECT_TRUE(persistent || kept.size() == (result.recoveryRecord.isEmpty() ? 0 : 1));
        } else if (result.recoveryRecord.isEmpty()) {
            EXPECT_TRUE(run.kept(false).isEmpty());
        }
        struct stat status = {};
        if (result.identity && ::stat(QFile::encodeName(run.path()).constData(), &status) == 0) {
            EXPECT_TRUE(result.identity->matches(status));
        }
        EXPECT_TRUE(result.identity || !result.isWritten() || GetParam().inPlace);
    }
};

TEST_P(SaveFaultTest, GoesWellWithoutFaults)
{
    SaveRun run(GetParam(), QDir::tempPath());
    if (!run.isReady())
        GTEST_SKIP() << "the file system cannot make this scenario";
    SystemFileOps ops;
    const SafeWriteResult result = run.save(ops);
    EXPECT_TRUE(result.isWritten()) << qPrintable(result.message);
    check(run, result, false);
    EXPECT_TRUE(run.kept(true).isEmpty());
}

TEST_P(SaveFaultTest, KeepsOldOrNewWhateverFails)
{
    if (!SaveRun(GetParam(), fastPlace()).isReady())
        GTEST_SKIP() << "the file system cannot make this scenario";
    for (const int error : {EIO, ENOSPC, EDQUOT, EACCES, EINTR, FaultyFileOps::shortWrite,
                            FaultyFileOps::wrongWrite}) {
        for (const bool persistent : {false, true}) {
            if (persistent && error == EINTR)
                continue; // who is always interrupted never ends
            bool wasHit = true;
            for (int call = 1; wasHit; ++call) {
                SCOPED_TRACE(testing::Message() << "call " << call << " fails with " << error
                                                << (persistent ? ", like all later ones" : ""));
                SaveRun run(GetParam(), fastPlace());
                SystemFileOps real;
                FaultyFileOps ops(real, {call, error, persistent});
                const SafeWriteResult result = run.save(ops);
                wasHit = ops.calls() >= call;
                check(run, result, persistent);
                EXPECT_EQ(ops.openFiles(), 0);
                if (!wasHit || error == EINTR || error == FaultyFileOps::shortWrite) {
                    EXPECT_TRUE(result.isWritten()) << qPrintable(result.message);
                }
                if (testing::Test::HasFailure())
                    return;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scenarios, SaveFaultTest, testing::ValuesIn(saveScenarios()),
                         [](const auto& scenario) { return std::string(scenario.param.name); });

} // namespace

} // namespace quillory
