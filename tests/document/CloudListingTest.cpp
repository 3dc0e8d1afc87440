#include "document/CloudListing.h"
#include "document/CloudContainer.h"
#include "document/FileMove.h"
#include "document/SystemFileOps.h"
#include "foundation/KeyedArchive.h"
#include "foundation/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 20'000; // milliseconds

class CloudListingTest : public ::testing::Test
{
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

    QString write(const QString& name, const QByteArray& bytes, int age = 0) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
        file.flush();
        EXPECT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-age),
                                     QFileDevice::FileModificationTime));
        return file.fileName();
    }

    static QByteArray archive(const QByteArray& text, int encoding)
    {
        return *encodeKeyedArchive({{u"text"_s, text},
                                    {u"encoding"_s, encoding},
                                    {u"lbFormat"_s, 1},
                                    {u"definitionTitle"_s, u"Text"_s},
                                    {u"baseURL"_s, QString()}});
    }

    /// Lists the folder, and waits until that is over.
    bool list(const QString& folder)
    {
        QSignalSpy finished(&listing, &CloudListing::finished);
        listing.queryiCloud(folder);
        EXPECT_TRUE(listing.isRunning());
        EXPECT_TRUE(finished.wait(patience));
        return finished.value(0).value(0).toBool();
    }

    QStringList names() const
    {
        QStringList names;
        for (const CloudEntry& entry : listing.iCloudArray())
            names += entry.title + u'|' + entry.extension;
        return names;
    }

    QString root() const { return m_folder.path(); }

    CloudListing listing;

private:
    QTemporaryDir m_folder;
};

TEST(CloudPreview, IsTheBeginningInOneLine)
{
    const QString fit(150, u'a');
    const std::pair<QString, QString> cases[]{
        {QString(), QString()},
        {fit, fit},
        {fit + u'a', QString(149, u'a') + u'…'},
        {u"a\n\nb\nc\n\n\nd"_s, u"a b c  d"_s},
        {u"a\r\nb"_s, u"a\r b"_s},
        {QString(147, u'a') + u"\n\n" + u"bcd"_s, QString(147, u'a') + u" …"_s},
        {QString(148, u'a') + u"\n\n" + u"bcd"_s, QString(148, u'a') + u" …"_s},
        // A pair where the cut would be.
        {QString(148, u'a') + u"😀bc"_s, QString(148, u'a') + u'…'},
    };
    for (const auto& [text, preview] : cases)
        EXPECT_EQ(cloudPreview(text).toStdString(), preview.toStdString());
}

TEST_F(CloudListingTest, holdsTheFilesThatAreTextsNewestFirst)
{
    write(u"old.txt"_s, "first\n\nsecond", 300);
    write(u"notes/deep/new.md"_s, "# é\n", 10);
    write(u"archive.tar.gz"_s, "no real one", 200);
    write(u"native.edit"_s, archive("stored \xe9", 5), 100);
    write(u"own.quillory"_s, archive("own", 4), 50);
    write(u"empty.txt"_s, "", 400);
    // Left out.
    write(u"README"_s, "no extension");
    write(u".hidden"_s, "no extension either");
    write(u"dot."_s, "nor here");
    write(u"latin.txt"_s, "caf\xe9");
    write(u"picture.png"_s, QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    write(u"zeros.dat"_s, QByteArray(100, '\0'));
    write(u"damaged.edit"_s, "bplist00 but nothing else");
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(u"pipe.txt"_s)).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(path(u"nowhere"_s), path(u"dangling.txt"_s)));
    ASSERT_TRUE(QDir().mkpath(path(u"folder.d"_s)));

    EXPECT_TRUE(list(root()));
    EXPECT_EQ(names(), (QStringList{u"new|md"_s, u"own|quillory"_s, u"native|edit"_s,
                                    u"archive.tar|gz"_s, u"old|txt"_s, u"empty|txt"_s}));
    const std::vector<CloudEntry>& found = listing.iCloudArray();
    EXPECT_EQ(found[0].body, u"# é "_s);
    EXPECT_EQ(found[2].body, u"stored é"_s);
    EXPECT_EQ(found[4].body, u"first second"_s);
    EXPECT_EQ(found[0].url, QUrl::fromLocalFile(path(u"notes/deep/new.md"_s)));
    EXPECT_EQ(found[4].date.toSecsSinceEpoch(),
              QFileInfo(path(u"old.txt"_s)).lastModified().toSecsSinceEpoch());

    write(u"latest.txt"_s, "x");
    EXPECT_TRUE(list(root()));
    EXPECT_EQ(names().size(), 7) << "anew, not beside";
    EXPECT_FALSE(list(path(u"nowhere"_s)));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(CloudListingTest, logsEachFileWithAnExtension)
{
    static QStringList logged;
    static QMutex mutex;
    logged.clear();
    write(u"a.txt"_s, "a");
    write(u"latin.txt"_s, "\xe9");
    write(u"plain"_s, "b");
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& message) {
            const QMutexLocker locker(&mutex);
            logged += message;
        });
    list(root());
    qInstallMessageHandler(before);
    logged.sort();
    EXPECT_EQ(logged,
              (QStringList{u"file: "_s + path(u"a.txt"_s), u"file: "_s + path(u"latin.txt"_s)}));
}

TEST_F(CloudListingTest, goesThroughEachFolderOnce)
{
    write(u"shared/a/one.txt"_s, "1", 20);
    write(u"shared/b/two.txt"_s, "2", 10);
    write(u"beside/three.txt"_s, "3");
    write(u"other.txt"_s, "beside the shared folder");
    const std::map<QString, QString> links{
        {u"shared/a/up"_s, u"shared"_s},
        {u"shared/a/self"_s, u"shared/a"_s},
        {u"shared/b/a"_s, u"shared/a"_s},
        {u"shared/above"_s, QString()},
        {u"shared/root"_s, u"/"_s},
        {u"shared/beside"_s, u"beside"_s},
        {u"shared/turn.d"_s, u"shared/turn.d"_s},
    };
    for (const auto& [link, target] : links)
        ASSERT_TRUE(QFile::link(target == u"/" ? target : path(target), path(link)));
    EXPECT_TRUE(list(path(u"shared"_s)));
    QStringList found = names();
    EXPECT_EQ(found.size(), 3);
    found.sort();
    EXPECT_EQ(found, (QStringList{u"one|txt"_s, u"three|txt"_s, u"two|txt"_s}));
}

TEST_F(CloudListingTest, readsNoMoreThanTheBeginningOfALargeFile)
{
    // A sparse file, whose zeros would make it a binary one if they were read.
    const QString large = write(u"large.txt"_s, QByteArray(3000, 'a') + QByteArray(700, '\n') +
                                                    QByteArray("é").repeated(300));
    ASSERT_EQ(::truncate(QFile::encodeName(large).constData(), off_t(1) << 32), 0);
    ASSERT_TRUE(list(root()));
    ASSERT_EQ(names(), QStringList(u"large|txt"_s));
    EXPECT_EQ(listing.iCloudArray()[0].body, QString(149, u'a') + u'…');
}

TEST_F(CloudListingTest, deliversWhileItGoesOnAndCanBeGivenUp)
{
    for (int i = 0; i < 1000; ++i)
        write(u"%1.txt"_s.arg(i), "text");
    QSignalSpy found(&listing, &CloudListing::found);
    QSignalSpy finished(&listing, &CloudListing::finished);
    bool wasRunning = false;
    QObject::connect(&listing, &CloudListing::found, &listing,
                     [&] { wasRunning |= listing.isRunning(); });
    ASSERT_TRUE(list(root()));
    EXPECT_GE(found.count(), 4);
    EXPECT_TRUE(wasRunning);
    EXPECT_EQ(listing.iCloudArray().size(), 1000);

    found.clear();
    finished.clear();
    listing.queryiCloud(root());
    ASSERT_TRUE(found.wait(patience));
    listing.cancel();
    EXPECT_FALSE(listing.isRunning());
    const size_t sofar = listing.iCloudArray().size();
    QTest::qWait(100);
    EXPECT_EQ(listing.iCloudArray().size(), sofar);
    EXPECT_EQ(finished.count(), 0);
}

// The container

TEST_F(CloudListingTest, aContainerHoldsWhatLiesInIt)
{
    const CloudContainer none{QString()};
    EXPECT_FALSE(none.isAvailable());
    EXPECT_FALSE(CloudContainer(path(u"nowhere"_s)).isAvailable());
    const QString inside = write(u"container/Documents/a.txt"_s, "a");
    const QString outside = write(u"container2/a.txt"_s, "a");
    ASSERT_TRUE(QFile::link(path(u"container"_s), path(u"link"_s)));
    const CloudContainer container(path(u"container"_s));
    EXPECT_TRUE(container.isAvailable());
    EXPECT_TRUE(container.holds(inside));
    EXPECT_TRUE(container.holds(path(u"link/Documents/a.txt"_s)));
    EXPECT_FALSE(container.holds(outside));
    EXPECT_FALSE(container.holds(QString()));
    EXPECT_FALSE(none.holds(inside));

    UserDefaults defaults(path(u"defaults.conf"_s));
    for (const bool isThere : {false, true}) {
        threadedIcloudCheck(isThere ? container : none, defaults, &listing);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return defaults.isWritten(keys::isiCloudAvailable) &&
                   defaults.value(keys::isiCloudAvailable) == isThere;
        }));
        EXPECT_FALSE(defaults.isWritten(keys::isIcloudAvailable));
    }
}

/// A rename goes from one device to another.
class TwoDevices : public SystemFileOps
{
public:
    bool refusesWrites = false;
    std::function<void()> whileWriting;

protected:
    FileStatus tryRename(const QByteArray& from, const QByteArray& to, Replacing how) override
    {
        return from.contains("/here/") ? FileStatus::failed(EXDEV)
                                       : SystemFileOps::tryRename(from, to, how);
    }
    FileResult<qint64> tryWrite(int descriptor, const char* bytes, qint64 size,
                                qint64 offset) override
    {
        if (const auto meanwhile = std::exchange(whileWriting, {}))
            meanwhile();
        return refusesWrites ? FileResult<qint64>::failed(ENOSPC)
                             : SystemFileOps::tryWrite(descriptor, bytes, size, offset);
    }
};

TEST_F(CloudListingTest, aFileIsMovedWholeOrNotAtAll)
{
    SystemFileOps oneDevice;
    TwoDevices twoDevices;
    ASSERT_TRUE(QDir().mkpath(path(u"there"_s)));
    const QByteArray text("a text\n");
    const auto bytesOf = [this](const QString& name) {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("(none)");
    };
    for (FileOps* ops : {static_cast<FileOps*>(&oneDevice), static_cast<FileOps*>(&twoDevices)}) {
        const QString from = write(u"here/a.txt"_s, text);
        QFile::setPermissions(from, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        const QString to = path(u"there/a.txt"_s);
        EXPECT_TRUE(moveFile(*ops, from, to));
        EXPECT_EQ(bytesOf(u"there/a.txt"_s), text);
        EXPECT_FALSE(QFileInfo::exists(from));
        EXPECT_EQ(QFileInfo(to).permissions() & QFileDevice::ReadOther, 0);

        write(u"here/a.txt"_s, "another");
        EXPECT_EQ(moveFile(*ops, from, to).error(), EEXIST);
        EXPECT_EQ(moveFile(*ops, from, path(u"nowhere/a.txt"_s)).error(), ENOENT);
        EXPECT_EQ(bytesOf(u"there/a.txt"_s), text);
        EXPECT_EQ(bytesOf(u"here/a.txt"_s), "another");
        QFile::remove(to);
    }
    twoDevices.refusesWrites = true;
    EXPECT_EQ(moveFile(twoDevices, path(u"here/a.txt"_s), path(u"there/a.txt"_s)).error(), ENOSPC);
    EXPECT_EQ(bytesOf(u"here/a.txt"_s), "another");
    EXPECT_EQ(QDir(path(u"there"_s)).entryList(QDir::Files | QDir::Hidden), QStringList());

    // What another program writes during the move is not lost.
    twoDevices.refusesWrites = false;
    twoDevices.whileWriting = [&] { write(u"here/a.txt"_s, "written meanwhile"); };
    EXPECT_FALSE(moveFile(twoDevices, path(u"here/a.txt"_s), path(u"there/a.txt"_s)));
    twoDevices.whileWriting = [&] {
        QFile::rename(write(u"here/new.txt"_s, "replaced meanwhile"), path(u"here/old.txt"_s));
        QFile::remove(path(u"here/a.txt"_s));
        QFile::rename(path(u"here/old.txt"_s), path(u"here/a.txt"_s));
    };
    EXPECT_EQ(moveFile(twoDevices, path(u"here/a.txt"_s), path(u"there/a.txt"_s)).error(), EBUSY);
    EXPECT_EQ(bytesOf(u"here/a.txt"_s), "replaced meanwhile");
    EXPECT_EQ(QDir(path(u"there"_s)).entryList(QDir::Files | QDir::Hidden), QStringList());
    twoDevices.whileWriting = [&] { QFile::remove(path(u"here/a.txt"_s)); };
    EXPECT_TRUE(moveFile(twoDevices, path(u"here/a.txt"_s), path(u"there/a.txt"_s)));
    EXPECT_EQ(bytesOf(u"there/a.txt"_s), "replaced meanwhile") << "there is no other";
}

} // namespace
} // namespace quillory
