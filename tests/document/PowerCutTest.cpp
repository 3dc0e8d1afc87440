// Saves in a file system whose power may go before any change to it: in every state that the device
// may then be in, the file is all old or all new, or the recovery store has both versions.

#include "document/FaultyFileOps.h"
#include "document/FileTransfer.h"
#include "document/PowerCutFileOps.h"
#include "document/SafeFileWriter.h"
#include "document/SaveScenario.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace quillory {

namespace {

const QByteArray target("/home/file.txt");
const QByteArray oldBytes = QByteArray(1200, 'o') + "old";
const QString storeFolder = QStringLiteral("/home/state/Recovery");

/// True when the store holds all of \a bytes in a record of that kind.
bool isKept(PowerCutFileOps& ops, bool previous, const QByteArray& bytes)
{
    RecoveryStore store(ops, storeFolder);
    const auto records = store.records();
    return std::any_of(records->begin(), records->end(), [&](const RecoveryRecord& record) {
        QByteArray found;
        const bool whole = store.bytes(record.name)([&found](QByteArrayView piece) {
            found.append(piece);
            return true;
        });
        return whole && record.isPrevious == previous && found == bytes;
    });
}

struct PowerCutCase
{
    const char* name;
    bool isNew = false;
    bool isHardLinked = false;
    bool hasUnnamedFiles = true;
    QByteArray newBytes;
};

std::ostream& operator<<(std::ostream& stream, const PowerCutCase& powerCut)
{
    return stream << powerCut.name;
}

class PowerCutTest : public testing::TestWithParam<PowerCutCase>
{
protected:
    static bool isOld(const PowerCutFileOps& ops)
    {
        return GetParam().isNew ? !ops.exists(target)
                                : ops.exists(target) && ops.content(target) == oldBytes;
    }
    static bool isNew(const PowerCutFileOps& ops)
    {
        return ops.exists(target) && ops.content(target) == GetParam().newBytes;
    }
    static bool isSafe(PowerCutFileOps& ops)
    {
        return isOld(ops) || isNew(ops) ||
               (isKept(ops, false, GetParam().newBytes) && isKept(ops, true, oldBytes));
    }

    static void prepare(PowerCutFileOps& ops)
    {
        ops.makeFile("/home/neighbour.txt", "neighbour");
        if (!GetParam().isNew)
            ops.makeFile(target, oldBytes);
        if (GetParam().isHardLinked)
            ops.makeHardLink(target, "/home/link.txt");
    }

    /// Saves, with a power cut tried before each change, and afterwards. The call that \a failing
    /// names fails once; answers how many calls there were.
    static int saveWithCuts(int failing)
    {
        PowerCutFileOps ops(GetParam().hasUnnamedFiles);
        prepare(ops);
        int states = 0;
        int unsafeStates = 0;
        ops.setBeforeChange([&] {
            ops.forEachStateAfterPowerCut([&](PowerCutFileOps& found) {
                ++states;
                unsafeStates += isSafe(found) ? 0 : 1;
            });
        });
        FaultyFileOps faulty(ops, {failing, EIO, false}, FaultyFileOps::Syncing::Real);
        RecoveryStore store(faulty, storeFolder);
        SafeWriteRequest request;
        request.path = QString::fromLatin1(target);
        request.source = sourceOf(GetParam().newBytes);
        const SafeWriteResult result = SafeFileWriter(faulty, store).write(request);

        EXPECT_GT(states, 5);
        EXPECT_EQ(unsafeStates, 0) << "of " << states;
        EXPECT_TRUE(result.isWritten() || failing > 0) << qPrintable(result.message);
        ops.forEachStateAfterPowerCut([&](PowerCutFileOps& found) {
            EXPECT_TRUE(isSafe(found));
            if (result.isWritten()) {
                EXPECT_TRUE(isNew(found)) << "what counts as saved must last";
            } else if (!result.recoveryRecord.isEmpty()) {
                EXPECT_TRUE(isNew(found) || isKept(found, false, GetParam().newBytes));
            }
        });
        return faulty.calls();
    }
};

TEST_P(PowerCutTest, LeavesOldOrNew)
{
    saveWithCuts(0);
}

TEST_P(PowerCutTest, LeavesOldOrNewWhenACallFailsToo)
{
    int calls = 1;
    for (int failing = 1; failing <= calls && !HasFailure(); ++failing) {
        SCOPED_TRACE(testing::Message() << "call " << failing << " fails");
        calls = saveWithCuts(failing);
    }
}

const QByteArray shorter = QByteArray(500, 'n') + "new";
const QByteArray longer = QByteArray(2600, 'n') + "new";

INSTANTIATE_TEST_SUITE_P(
    Saves, PowerCutTest,
    testing::Values(PowerCutCase{"newFile", true, false, true, longer},
                    PowerCutCase{"newFileNamedAtOnce", true, false, false, longer},
                    PowerCutCase{"replaced", false, false, true, shorter},
                    PowerCutCase{"replacedByOneNamedAtOnce", false, false, false, longer},
                    PowerCutCase{"overwrittenByLonger", false, true, true, longer},
                    PowerCutCase{"overwrittenByShorter", false, true, true, shorter},
                    PowerCutCase{"overwrittenStoreNamedAtOnce", false, true, false, longer}),
    [](const auto& powerCut) { return std::string(powerCut.param.name); });

// The model must find what is wrong with the two ways in which files are most often lost.

int lossesOf(const std::function<void(FileOps&)>& save, const QByteArray& newBytes)
{
    PowerCutFileOps ops;
    ops.makeFile(target, oldBytes);
    int losses = 0;
    const auto count = [&] {
        ops.forEachStateAfterPowerCut([&](PowerCutFileOps& found) {
            const QByteArray bytes = found.content(target);
            losses += bytes == oldBytes || bytes == newBytes ? 0 : 1;
        });
    };
    ops.setBeforeChange(count);
    save(ops);
    count();
    return losses;
}

TEST(PowerCutModelTest, FindsLossInOverwritingAndInRenamingUnsynced)
{
    const ByteSource source = sourceOf(longer);
    EXPECT_GT(lossesOf(
                  [&](FileOps& ops) {
                      const int file = *ops.open(target, O_RDWR);
                      ASSERT_TRUE(ops.truncate(file, 0));
                      ASSERT_TRUE(writeBytes(ops, file, source));
                      ASSERT_TRUE(ops.sync(file));
                  },
                  longer),
              0);
    const auto rename = [&](bool synced) {
        return lossesOf(
            [&](FileOps& ops) {
                const int file = *ops.open("/home/new", O_RDWR | O_CREAT | O_EXCL);
                ASSERT_TRUE(writeBytes(ops, file, source));
                if (synced) {
                    ASSERT_TRUE(ops.sync(file));
                }
                ASSERT_TRUE(ops.rename("/home/new", target, FileOps::Replacing::Yes));
            },
            longer);
    };
    EXPECT_GT(rename(false), 0);
    EXPECT_EQ(rename(true), 0);
}

} // namespace

} // namespace quillory
