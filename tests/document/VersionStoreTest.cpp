#include "document/VersionStore.h"

#include "document/DocumentFixture.h"
#include "document/FaultyFileOps.h"
#include "document/VersionPruning.h"
#include "document/VersionReading.h"

#include <QDirIterator>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillory {
namespace {

using test::DocumentFixture;

QDateTime at(const char* time)
{
    return QDateTime::fromString(QString::fromLatin1(time), Qt::ISODate);
}

TEST(VersionPruningTest, ThinsOutWithAge)
{
    const QDateTime now = at("2026-11-22T12:00:00Z");
    struct Case
    {
        const char* what;
        std::vector<const char*> times;
        std::vector<size_t> dropped;
    };
    const Case cases[]{
        {"all of the last day",
         {"2026-11-22T11:59:59Z", "2026-11-22T11:59:58Z", "2026-11-21T12:00:00Z"},
         {}},
        {"the last of each hour",
         {"2026-11-20T10:10:00Z", "2026-11-20T10:50:00Z", "2026-11-20T10:20:00Z",
          "2026-11-20T11:00:00Z"},
         {0, 2}},
        {"the last of each day",
         {"2026-11-10T01:00:00Z", "2026-11-10T22:00:00Z", "2026-11-11T01:00:00Z"},
         {0}},
        {"the last of each week, from Thursday on",
         {"2026-06-04T01:00:00Z", "2026-06-10T22:00:00Z", "2026-06-11T01:00:00Z"},
         {0}},
        {"none that is older than a year", {"2025-11-22T11:00:00Z", "2025-11-23T13:00:00Z"}, {0}},
        {"of the future", {"2027-01-01T00:00:00Z", "2027-01-01T00:00:00Z"}, {}},
    };
    for (const Case& sample : cases) {
        std::vector<KeptVersion> versions;
        for (const char* time : sample.times)
            versions.push_back({0, at(time), 10});
        EXPECT_EQ(versionsToDrop(versions, now), sample.dropped) << sample.what;
    }
}

TEST(VersionPruningTest, EachFileHasItsOwnAndRoomIsShared)
{
    const QDateTime now = at("2026-11-22T12:00:00Z");
    const std::vector<KeptVersion> versions{{0, at("2026-11-20T10:10:00Z"), 40},
                                            {1, at("2026-11-20T10:20:00Z"), 40},
                                            {0, at("2026-11-22T11:00:00Z"), 40},
                                            {1, at("2026-11-22T10:00:00Z"), 40}};
    EXPECT_EQ(versionsToDrop(versions, now), (std::vector<size_t>{}));
    EXPECT_EQ(versionsToDrop(versions, now, {160}), (std::vector<size_t>{}));
    EXPECT_EQ(versionsToDrop(versions, now, {159}), (std::vector<size_t>{0}));
    EXPECT_EQ(versionsToDrop(versions, now, {80}), (std::vector<size_t>{0, 1}));
    EXPECT_EQ(versionsToDrop(versions, now, {0}), (std::vector<size_t>{0, 1, 2, 3}));
}

class VersionStoreTest : public DocumentFixture
{
protected:
    /// Has the file hold \a bytes, written at \a time.
    QString writeAt(const char* name, const QByteArray& bytes, qint64 seconds) const
    {
        const QString path = write(name, bytes);
        const timespec time{seconds, 0};
        const timespec both[2]{time, time};
        EXPECT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), both, 0), 0);
        return path;
    }
    static QByteArray bytesOf(VersionStore& from, const FileVersion& version)
    {
        QByteArray bytes;
        EXPECT_TRUE(from.bytes(version)([&](QByteArrayView piece) {
            bytes.append(piece);
            return true;
        }));
        return bytes;
    }
    QByteArrayList contents(const QString& path)
    {
        QByteArrayList list;
        const auto versions = store.versions(path);
        EXPECT_TRUE(versions);
        for (const FileVersion& version : *versions)
            list.append(bytesOf(store, version));
        return list;
    }
    qsizetype filesInStore() const
    {
        QDirIterator files(store.folder(), QDir::Files | QDir::Hidden,
                           QDirIterator::Subdirectories);
        qsizetype count = 0;
        for (; files.hasNext(); files.next())
            ++count;
        return count;
    }

    VersionStore store{ops, folder.filePath(QStringLiteral("state/Versions"))};
};

TEST_F(VersionStoreTest, KeepsWhatFilesHeldNewestFirst)
{
    const QString path = file("a.txt");
    EXPECT_TRUE(store.versions(path)->isEmpty());
    EXPECT_EQ(store.keep(path, StringEncoding::utf8).error(), ENOENT);
    for (const auto& [bytes, seconds] :
         {std::pair("one", 1000), std::pair("two", 2000), std::pair("three", 3000)}) {
        writeAt("a.txt", bytes, seconds);
        ASSERT_TRUE(store.keep(path, StringEncoding::isoLatin1));
        ASSERT_TRUE(store.keep(path, StringEncoding::isoLatin1)); // again
    }
    EXPECT_EQ(contents(path), (QByteArrayList{"three", "two", "one"}));
    const FileVersion newest = store.versions(path)->first();
    EXPECT_EQ(newest.time.toSecsSinceEpoch(), 3000);
    EXPECT_EQ(newest.encoding, StringEncoding::isoLatin1);
    EXPECT_EQ(newest.size, 5);

    // What comes back is kept once, where it belongs now.
    writeAt("a.txt", "one", 4000);
    const QByteArray kept = *store.keep(path, StringEncoding::isoLatin1);
    EXPECT_EQ(kept, store.versions(path)->first().digest);
    EXPECT_EQ(contents(path), (QByteArrayList{"one", "three", "two"}));

    // Another file, and another process.
    const QString other = write("b.txt", "one");
    EXPECT_TRUE(contents(other).isEmpty());
    VersionStore elsewhere(ops, store.folder());
    EXPECT_TRUE(elsewhere.keep(other, StringEncoding::utf8));
    EXPECT_EQ(contents(other), QByteArrayList{"one"});
    EXPECT_EQ(contents(path).size(), 3);
}

TEST_F(VersionStoreTest, IsForItsOwnerOnly)
{
    ASSERT_TRUE(store.keep(write("a.txt", "one"), StringEncoding::utf8));
    const auto none = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                      QFile::WriteOther | QFile::ExeOther;
    EXPECT_FALSE(QFile::permissions(store.folder()) & none);
    QDirIterator all(store.folder(), QDir::AllEntries | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext())
        EXPECT_FALSE(QFile::permissions(all.next()) & none);
}

TEST_F(VersionStoreTest, LargeAndSpecialFilesHaveNone)
{
    const QString large = write("large.txt", {});
    ASSERT_EQ(::truncate(QFile::encodeName(large).constData(), VersionStore::largest + 1), 0);
    EXPECT_EQ(store.keep(large, StringEncoding::utf8).error(), EFBIG);
    const QByteArray pipe = QFile::encodeName(file("pipe"));
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    EXPECT_EQ(store.keep(file("pipe"), StringEncoding::utf8).error(), EINVAL);
    EXPECT_FALSE(store.keep(folder.path(), StringEncoding::utf8));
    EXPECT_EQ(filesInStore(), 0);
}

TEST_F(VersionStoreTest, VersionsFollowTheName)
{
    const QString first = writeAt("a.txt", "one", 1000);
    ASSERT_TRUE(store.keep(first, StringEncoding::utf8));
    const QString second = file("b.txt");
    EXPECT_TRUE(store.followRename(first, second));
    EXPECT_TRUE(contents(first).isEmpty());
    EXPECT_EQ(contents(second), QByteArrayList{"one"});
    EXPECT_TRUE(store.followRename(first, second)); // there are none

    // Onto a name that has some of its own.
    writeAt("a.txt", "two", 2000);
    ASSERT_TRUE(store.keep(first, StringEncoding::utf8));
    EXPECT_TRUE(store.followRename(second, first));
    EXPECT_EQ(contents(first), (QByteArrayList{"two", "one"}));
}

TEST_F(VersionStoreTest, PrunesWhatIsOld)
{
    const QString path = writeAt("a.txt", "one", 1000);
    ASSERT_TRUE(store.keep(path, StringEncoding::utf8));
    // How old a version is counts from when it was kept, not from when the file was written.
    store.prune(QDateTime::currentDateTimeUtc());
    EXPECT_EQ(contents(path).size(), 1);
    store.prune(QDateTime::currentDateTimeUtc().addDays(2));
    EXPECT_EQ(contents(path).size(), 1);
    store.prune(QDateTime::currentDateTimeUtc().addDays(400));
    EXPECT_EQ(filesInStore(), 0);
    EXPECT_TRUE(QDir(store.folder()).isEmpty()) << "nor is its folder";
    ASSERT_TRUE(store.keep(path, StringEncoding::utf8));
    EXPECT_EQ(contents(path).size(), 1);
}

/// Counts what the device is waited for.
class SyncCounter : public SystemFileOps
{
public:
    int syncs = 0;

protected:
    FileStatus trySync(int descriptor) override
    {
        ++syncs;
        return SystemFileOps::trySync(descriptor);
    }
};

TEST_F(VersionStoreTest, BringsNoMoreToTheDeviceThanIsNew)
{
    SyncCounter counter;
    VersionStore counted(counter, store.folder());
    ASSERT_TRUE(counted.keep(writeAt("a.txt", "one", 1000), StringEncoding::utf8));
    const int first = counter.syncs;
    ASSERT_TRUE(counted.keep(writeAt("a.txt", "two", 2000), StringEncoding::utf8));
    EXPECT_EQ(counter.syncs - first, 2) << "the version, and its name";
    // A folder that is new has a name that is new.
    ASSERT_TRUE(QDir(store.folder()).removeRecursively());
    counter.syncs = 0;
    ASSERT_TRUE(counted.keep(writeAt("a.txt", "three", 3000), StringEncoding::utf8));
    EXPECT_GE(counter.syncs, first);
}

TEST_F(VersionStoreTest, IsReadAsTheFileWouldBe)
{
    struct Case
    {
        const char* name;
        QByteArray bytes;
        StringEncoding encoding;
        QString text;
    };
    const Case cases[]{
        {"a.txt", "gr\xfc\xdf dich", StringEncoding::isoLatin1, QStringLiteral("grüß dich")},
        {"b.txt", "plain", StringEncoding::none, QStringLiteral("plain")},
        {"c.txt", "gr\xc3\xbc\xc3\x9f", StringEncoding::none, QStringLiteral("grüß")},
    };
    for (const Case& sample : cases) {
        const QString path = write(sample.name, sample.bytes);
        ASSERT_TRUE(store.keep(path, sample.encoding));
        const ReadResult result =
            readVersion(store, store.versions(path)->first(), DocumentType::ofFile(path));
        ASSERT_TRUE(result.answer && result.text) << sample.name;
        EXPECT_EQ(result.text->string(), sample.text);
    }
    const QString path = file("a.txt");
    const FileVersion version = store.versions(path)->first();
    QDirIterator files(store.folder(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile record(files.next());
        ASSERT_TRUE(record.open(QFile::ReadWrite) && record.resize(record.size() - 1));
    }
    EXPECT_FALSE(readVersion(store, version, DocumentType::text).answer);
}

/// With every call to the file system failing in turn, once and for good: a version that is said to
/// be kept is there, what was kept before still is, and nothing else is left.
TEST_F(VersionStoreTest, NothingIsLostWhateverFails)
{
    for (const int error : {EIO, ENOSPC, FaultyFileOps::shortWrite, FaultyFileOps::wrongWrite}) {
        for (const bool isPersistent : {false, true}) {
            bool isDone = false;
            for (int call = 1; !isDone; ++call) {
                ASSERT_LT(call, 500);
                QTemporaryDir place;
                const QString root = place.filePath(QStringLiteral("Versions"));
                const QString path = write("a.txt", "one");
                VersionStore sound(ops, root);
                ASSERT_TRUE(sound.keep(path, StringEncoding::utf8));
                write("a.txt", QByteArray(5000, 'n'));

                FaultyFileOps faulty(ops, {call, error, isPersistent});
                VersionStore tried(faulty, root);
                const auto kept = tried.keep(path, StringEncoding::utf8);
                isDone = faulty.calls() < call;
                EXPECT_EQ(faulty.openFiles(), 0);
                QByteArrayList held;
                const auto found = sound.versions(path);
                for (const FileVersion& version : *found)
                    held.append(bytesOf(sound, version));
                EXPECT_TRUE(held.contains("one")) << "call " << call << ", error " << error;
                EXPECT_TRUE(!kept || held.contains(QByteArray(5000, 'n')))
                    << "call " << call << ", error " << error;
                EXPECT_LE(held.size(), 2);
            }
        }
    }
}

// Saving

TEST_F(VersionStoreTest, SaveKeepsWhatTheFileHeld)
{
    DocumentEnvironment withVersions{folders, defaults, notifications, ops, recovery, &store};
    const QString path = write("a.txt", "one\n");
    Document document(withVersions);
    ASSERT_TRUE(document.readFromURL(path, DocumentType::ofFile(path)));
    document.windowControllerDidLoadNib(nullptr);
    SaveResult result;
    ASSERT_TRUE(document.writeToURL(path, document.type(), &result));
    EXPECT_TRUE(contents(path).isEmpty()) << "the same was written";

    document.textView().insertText(QStringLiteral("x"));
    ASSERT_TRUE(document.writeToURL(path, document.type(), &result));
    EXPECT_EQ(contents(path), QByteArrayList{"one\n"});
    EXPECT_EQ(result.versionDigest, store.versions(path)->first().digest);

    // One by command goes well without, an automatic one does not.
    ASSERT_TRUE(QFile::exists(store.folder()));
    QDir(store.folder()).removeRecursively();
    ASSERT_FALSE(write("state/Versions", "in the way").isEmpty());
    document.textView().insertText(QStringLiteral("y"));
    SaveJob job = document.saveJob(path, document.type());
    job.isAutomatic = true;
    result = job.run(ops, recovery);
    EXPECT_FALSE(result.written);
    EXPECT_EQ(result.problem, SaveProblem::NoVersion);
    EXPECT_TRUE(result.message.contains(u"a.txt"));
    EXPECT_EQ(test::readBytes(path), "xone\n");
    job.isAutomatic = false;
    EXPECT_TRUE(job.run(ops, recovery).written);
    EXPECT_EQ(test::readBytes(path), "xyone\n");
}

TEST_F(VersionStoreTest, AutomaticSaveLeavesAloneWhatIsNotMeantToBeWritten)
{
    const QString path = write("a.txt", "one\n");
    const auto document = open(path);
    document->textView().insertText(QStringLiteral("x"));
    SaveJob job = document->saveJob(path, document->type());
    job.isAutomatic = true;
    job.keepsText = false;
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0444), 0);
    EXPECT_EQ(job.run(ops, recovery).problem, SaveProblem::NotQuiet);
    EXPECT_EQ(test::readBytes(path), "one\n");
    QFile::remove(path);
    EXPECT_EQ(job.run(ops, recovery).problem, SaveProblem::NotQuiet);
    EXPECT_FALSE(QFile::exists(path)) << "another program deleted it";
    EXPECT_TRUE(recovery.records()->isEmpty());
}

} // namespace
} // namespace quillory
