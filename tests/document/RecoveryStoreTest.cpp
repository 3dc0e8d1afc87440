#include "document/RecoveryStore.h"

#include "document/SaveScenario.h"
#include "document/SystemFileOps.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {

namespace {

class RecoveryStoreTest : public testing::Test
{
protected:
    QString pathOf(const QString& name) const { return m_store.folder() + u'/' + name; }

    QString storedId(const QByteArray& bytes, const QString& id = {})
    {
        RecoveryEntry entry;
        entry.path = QStringLiteral("/home/someone/Größe.txt");
        entry.encoding = StringEncoding::utf16;
        entry.lbFormat = 3;
        return *m_store.store(entry, sourceOf(bytes), id);
    }

    /// The bytes that the record gives, and whether they are whole.
    std::pair<QByteArray, bool> read(const QString& name)
    {
        QByteArray bytes;
        const bool whole = m_store.bytes(name)([&bytes](QByteArrayView piece) {
            bytes.append(piece);
            return true;
        });
        return {bytes, whole};
    }

    QTemporaryDir m_folder;
    SystemFileOps m_ops;
    RecoveryStore m_store{m_ops, m_folder.filePath(QStringLiteral("state/Quillory/Recovery"))};
};

TEST_F(RecoveryStoreTest, GivesBackWhatItKeeps)
{
    EXPECT_TRUE(m_store.records()->isEmpty()) << "before the folder exists";
    const QByteArray bytes(700'000, 'x');
    const QString id = storedId(bytes);
    ASSERT_FALSE(id.isEmpty());

    const auto records = m_store.records();
    ASSERT_EQ(records->size(), 1);
    const RecoveryRecord& record = records->first();
    EXPECT_EQ(record.id, id);
    EXPECT_FALSE(record.isDamaged);
    EXPECT_FALSE(record.isPrevious);
    EXPECT_EQ(record.size.value(), bytes.size());
    EXPECT_EQ(record.entry.path, QStringLiteral("/home/someone/Größe.txt"));
    EXPECT_EQ(record.entry.encoding, StringEncoding::utf16);
    EXPECT_EQ(record.entry.lbFormat, 3);
    EXPECT_LT(std::abs(record.entry.time.secsTo(QDateTime::currentDateTimeUtc())), 60);
    EXPECT_EQ(read(record.name), std::pair(bytes, true));

    EXPECT_TRUE(m_store.remove(id));
    EXPECT_TRUE(m_store.records()->isEmpty());
    EXPECT_TRUE(m_store.remove(id)) << "once more does no harm";
}

TEST_F(RecoveryStoreTest, IsForItsOwnerOnly)
{
    ASSERT_TRUE(QDir().mkpath(m_store.folder()));
    ASSERT_EQ(chmod(QFile::encodeName(m_store.folder()).constData(), 0755), 0);
    storedId("text");
    const auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    EXPECT_EQ(QFile::permissions(pathOf(m_store.records()->first().name)), owner);
    EXPECT_EQ(QFile::permissions(m_store.folder()), owner | QFile::ExeOwner | QFile::ExeUser);
}

TEST_F(RecoveryStoreTest, ALaterTextTakesThePlaceOfTheEarlierOne)
{
    const QString id = storedId("first");
    EXPECT_EQ(storedId("second", id), id);
    ASSERT_EQ(m_store.records()->size(), 1);
    EXPECT_EQ(read(m_store.records()->first().name).first, "second");
}

TEST_F(RecoveryStoreTest, KeepsEveryPreviousVersionUntilTheTextIsSafe)
{
    const QString id = storedId("text");
    const QString other = storedId("another text");
    const QString first = *m_store.storePrevious(id, {}, sourceOf("old"));
    const QString second = *m_store.storePrevious(id, {}, sourceOf("half new, half old"));
    EXPECT_EQ(read(first), std::pair(QByteArray("old"), true));
    EXPECT_EQ(read(second), std::pair(QByteArray("half new, half old"), true));

    EXPECT_TRUE(m_store.removeRecord(second));
    EXPECT_EQ(m_store.records()->size(), 3);
    EXPECT_TRUE(m_store.remove(id));
    ASSERT_EQ(m_store.records()->size(), 1);
    EXPECT_EQ(m_store.records()->first().id, other);
}

TEST_F(RecoveryStoreTest, ReportsDamageWhereverItIs)
{
    const QByteArray bytes("the text that was to be kept");
    storedId(bytes);
    const QString name = m_store.records()->first().name;
    const QByteArray whole = contentOf(pathOf(name));
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray flipped = whole;
        flipped[at] = char(flipped[at] ^ 0x10);
        writeFile(pathOf(name), flipped);
        EXPECT_FALSE(read(name).second) << "byte " << at << " changed";

        writeFile(pathOf(name), whole.first(at));
        ASSERT_EQ(m_store.records()->size(), 1);
        EXPECT_TRUE(m_store.records()->first().isDamaged) << "cut after " << at;
        EXPECT_FALSE(read(name).second);
    }
    writeFile(pathOf(name), whole.chopped(5));
    EXPECT_EQ(read(name).first, bytes.chopped(5)) << "what is left is still offered";

    writeFile(pathOf(QStringLiteral("notes")), "not the store's");
    EXPECT_EQ(m_store.records()->size(), 1);
}

} // namespace

} // namespace quillory
