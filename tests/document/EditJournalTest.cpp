// What a journal of edits gives back: after any edits, cut or damaged anywhere, after a power cut,
// and whichever call to the file system fails.

#include "document/EditJournal.h"
#include "document/DocumentFixture.h"
#include "document/FaultyFileOps.h"
#include "document/PowerCutFileOps.h"
#include "document/RecoveredDocument.h"
#include "document/VersionStore.h"

#include <QSignalSpy>
#include <fcntl.h>
#include <random>

namespace quillory {
namespace {

using test::DocumentFixture;
using State = RecoveredDocument::State;

/// What the journal holds, whoever has locked it.
std::optional<TextSnapshot> replayed(FileOps& ops, const RecoveryStore& store, const QString& id,
                                     const TextSnapshot& base = {})
{
    const auto file = FileHandle::open(ops, JournalFile::pathOf(store, id), O_RDONLY);
    if (!file)
        return std::nullopt;
    const JournalReader reader(ops, file->descriptor());
    const auto replay = reader.replay(base);
    return replay ? std::optional(replay->text) : std::nullopt;
}

JournalReader readerOf(const QByteArray& bytes)
{
    return JournalReader([bytes](char* target, qint64 size, qint64 offset) {
        const qint64 count = std::clamp<qint64>(bytes.size() - offset, 0, size);
        std::copy_n(bytes.constData() + std::min<qint64>(offset, bytes.size()), count, target);
        return count;
    });
}

class EditJournalTest : public DocumentFixture
{
protected:
    QString journalPath(Document& document) const
    {
        return QFile::decodeName(JournalFile::pathOf(recovery, document.journal().id()));
    }

    /// One user action, of any kind.
    static void editAtRandom(Document& document, std::mt19937& random)
    {
        const auto below = [&](TextOffset end) {
            return end > 0 ? TextOffset(random() % quint64(end)) : 0;
        };
        static const QStringList pieces{
            QStringLiteral("x"),      QStringLiteral("\n"),    QString(),
            QStringLiteral("größer"), QStringLiteral("漢字😀"), QString(QChar(0xd800)),
            QString(1000, u'l')};
        const auto piece = [&] { return TextSnapshot(pieces[int(below(pieces.size()))]); };
        TextStorage& storage = document.textStorage();
        const TextOffset length = storage.length();
        const TextOffset at = below(length + 1);
        switch (below(6)) {
        case 0:
            document.undoManager().undo();
            break;
        case 1: {
            const TextOffset half = length / 2;
            const TextOffset first = below(half);
            const TextEdit edits[]{{{first, std::min<TextOffset>(3, half - first)}, piece()},
                                   {{half, below(length - half)}, piece()},
                                   {{length, 0}, piece()}};
            storage.replaceCharacters(edits);
            break;
        }
        case 2:
            storage.beginEditing();
            storage.replaceCharactersInRange({at, 2}, piece());
            storage.replaceCharactersInRange({below(at + 1), 1}, piece());
            storage.endEditing();
            break;
        default:
            document.undoManager().replaceCharactersInRange(
                TextRange{at, below(4)}.clampedTo(length), piece());
        }
    }

    /// A journal of some batches, and what the text was after each of them.
    QByteArray sampleJournal(std::vector<QString>& states)
    {
        const auto document = open(write("a.txt", "größe\n"));
        states.push_back(document->completeString().string());
        std::mt19937 random(7);
        for (int i = 0; i < 8; ++i) {
            const TextSnapshot before = document->completeString();
            do
                document->textStorage().replaceCharactersInRange(
                    {TextOffset(random() % quint64(before.length() + 1)), 1},
                    QString(int(1 + random() % 3), i % 2 == 0 ? u'x' : u'漢'));
            while (document->completeString().isSameTree(before));
            states.push_back(document->completeString().string());
        }
        return test::readBytes(journalPath(*document));
    }
};

TEST_F(EditJournalTest, GivesBackWhateverWasEdited)
{
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const bool named = seed % 2 == 0;
        const auto document =
            named ? open(write("a.txt", "one\r\ntwo größer\r\nthree\r\n")) : openNew();
        EXPECT_TRUE(document->journal().id().isEmpty()) << "opening costs nothing";
        for (int i = 0; i < 40; ++i) {
            editAtRandom(*document, random);
            if (document->journal().id().isEmpty())
                continue;
            ASSERT_EQ(replayed(ops, recovery, document->journal().id()),
                      std::optional(document->completeString()))
                << "edit " << i;
        }
    }
    EXPECT_TRUE(JournalFile::idsIn(ops, recovery).isEmpty()) << "closed documents leave nothing";
}

TEST_F(EditJournalTest, EveryCutAndEveryFlippedByteGivesAPrefix)
{
    std::vector<QString> states;
    const QByteArray whole = sampleJournal(states);
    size_t reached = 0;
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        const JournalReader reader = readerOf(whole.first(size));
        if (!reader.isReadable())
            continue;
        const auto replay = reader.replay({});
        ASSERT_TRUE(replay) << "cut after " << size;
        const auto state = std::find(states.begin(), states.end(), replay->text.string());
        ASSERT_NE(state, states.end()) << "cut after " << size;
        const size_t index = size_t(state - states.begin());
        EXPECT_GE(index, reached) << "more bytes give no less";
        EXPECT_EQ(reader.isCut(), reader.end().offset != size);
        reached = index;
        // What cannot be read is not nothing.
        const JournalReader failing(
            [bytes = whole.first(size)](char* target, qint64 count, qint64 offset) -> qint64 {
                if (offset >= bytes.size())
                    return -1;
                count = std::min(count, bytes.size() - offset);
                std::copy_n(bytes.constData() + offset, count, target);
                return count;
            });
        EXPECT_TRUE(failing.isCut());
        EXPECT_EQ(failing.end().offset, reader.end().offset);
    }
    EXPECT_EQ(reached, states.size() - 1);
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray flipped = whole;
        flipped[at] = char(flipped[at] ^ (1 << (at % 8)));
        const JournalReader reader = readerOf(flipped);
        if (!reader.isReadable())
            continue;
        EXPECT_TRUE(reader.isCut()) << "byte " << at;
        EXPECT_LE(reader.end().offset, at);
        const auto replay = reader.replay({});
        ASSERT_TRUE(replay) << "byte " << at;
        EXPECT_NE(std::find(states.begin(), states.end(), replay->text.string()), states.end());
    }
}

TEST_F(EditJournalTest, LongTextIsWrittenAsideInOrder)
{
    const auto document = openNew();
    const QString line = QString(1023, u'漢') + u'\n';
    document->textStorage().replaceCharactersInRange({0, 0}, QString(line).repeated(3000));
    document->textStorage().replaceCharactersInRange({5, 0}, u"x");
    document->textStorage().replaceCharactersInRange({1'000'000, 1'500'000}, u"y");
    EXPECT_TRUE(document->journal().flush());
    EXPECT_EQ(replayed(ops, recovery, document->journal().id()),
              std::optional(document->completeString()));
}

TEST_F(EditJournalTest, CostsTheEditsAndNotTheFile)
{
    const QByteArray bytes = QByteArray("0123456789abcde\n").repeated(100'000);
    const QString path = write("large.txt", bytes);
    auto document = open(path);
    const TextSnapshot base = document->completeString();
    document->textStorage().replaceCharactersInRange({800'000, 3}, u"typed");
    document->textStorage().replaceCharactersInRange({800'005, 0}, u" more");
    EXPECT_LT(QFileInfo(journalPath(*document)).size(), 2000);
    const QString id = document->journal().id();
    const TextSnapshot text = document->completeString();
    document->journal().leave();
    document.reset();

    EXPECT_EQ(recoverJournal(ops, recovery, id).document.text, text);
    // Of other bytes the edits cannot be made to anything; what they hold is there all the same.
    write("large.txt", bytes + "and more\n");
    RecoveredDocument pieces = recoverJournal(ops, recovery, id);
    EXPECT_EQ(pieces.state, State::Pieces);
    EXPECT_EQ(pieces.document.text->string(), u"typed more");
    pieces.journal.reset();
    QByteArray shifted = bytes;
    shifted.replace(799'990, 4, "....");
    write("large.txt", shifted);
    EXPECT_EQ(recoverJournal(ops, recovery, id).state, State::Pieces) << "other surroundings";
}

TEST_F(EditJournalTest, LargeTextOutlivesItsFile)
{
    struct Case
    {
        const char* name;
        std::function<void(const QString& path, EditJournal& journal)> happens;
    };
    const Case cases[]{
        {"changed, and told",
         [this](const QString&, EditJournal& journal) {
             write("large.txt", "theirs\n");
             journal.keepText();
         }},
        {"gone, and told",
         [](const QString& path, EditJournal& journal) {
             QFile::remove(path);
             journal.keepText();
         }},
        {"changed at the last moment",
         [this](const QString&, EditJournal&) { write("large.txt", "theirs\n"); }},
    };
    const QByteArray bytes = QByteArray("0123456789abcde\n").repeated(100'000);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QString path = write("large.txt", bytes);
        auto document = open(path);
        EditJournal& journal = document->journal();
        TextStorage& storage = document->textStorage();
        storage.replaceCharactersInRange({800'000, 3}, u"typed");
        const QString before = journal.id();
        c.happens(path, journal);
        storage.replaceCharactersInRange({5, 0}, u"more");
        storage.replaceCharactersInRange({1'000'000, 400'000}, u"");
        const TextSnapshot text = document->completeString();
        EXPECT_TRUE(journal.flush());
        EXPECT_NE(journal.id(), before);
        const QString id = journal.id();
        journal.leave();
        document.reset();
        backgroundPool().waitForDone();
        EXPECT_EQ(JournalFile::idsIn(ops, recovery), QStringList(id));
        const RecoveredDocument recovered = recoverJournal(ops, recovery, id);
        EXPECT_EQ(recovered.state, State::Text);
        EXPECT_EQ(recovered.document.text, text);
        (void)ops.remove(JournalFile::pathOf(recovery, id));
    }
}

TEST_F(EditJournalTest, LostBaseIsLookedUpAmongTheVersions)
{
    VersionStore versions(ops, file("versions"));
    const QByteArray bytes = QByteArray("0123456789abcde\n").repeated(100'000);
    // As when the program ends between the save and the next journal; or another program writes.
    for (const bool isSaved : {true, false}) {
        SCOPED_TRACE(isSaved);
        const char* name = isSaved ? "saved.txt" : "theirs.txt";
        const QString path = write(name, bytes);
        auto document = open(path);
        document->textStorage().replaceCharactersInRange({800'000, 3}, u"typed");
        const TextSnapshot text = document->completeString();
        const QString id = document->journal().id();
        document->journal().leave();
        document.reset();
        ASSERT_TRUE(versions.keep(path, StringEncoding::utf8));
        write(name, isSaved ? text.string().toUtf8() : bytes + "theirs\n");
        const RecoveredDocument recovered = recoverJournal(ops, recovery, id, &versions);
        EXPECT_EQ(recovered.state, isSaved ? State::Nothing : State::Text);
        EXPECT_EQ(JournalFile::idsIn(ops, recovery).isEmpty(), isSaved);
        EXPECT_EQ(recovered.document.text, isSaved ? std::nullopt : std::optional(text));
        backgroundPool().waitForDone();
        (void)ops.remove(JournalFile::pathOf(recovery, id));
    }
}

TEST_F(EditJournalTest, SaveBeginsAnewAndKeepsWhatWasTypedMeanwhile)
{
    for (const bool isLong : {false, true}) {
        const QString path =
            write("a.txt", isLong ? QByteArray("line of text\n").repeated(100'000) : "one\n");
        auto document = open(path);
        EditJournal& journal = document->journal();
        TextStorage& storage = document->textStorage();
        storage.replaceCharactersInRange({0, 0}, u"1");
        const QString before = journal.id();
        journal.noteSaving();
        const SaveJob job = document->saveJob(path, document->type());
        storage.replaceCharactersInRange({1, 0}, u"2");
        const SaveResult result = job.run(ops, recovery);
        storage.replaceCharactersInRange({0, 1}, u"3");
        EXPECT_EQ(replayed(ops, recovery, journal.id(),
                           isLong ? job.text.replacing({0, 1}, TextSnapshot()) : TextSnapshot()),
                  std::optional(document->completeString()));
        document->finishSave(job, result);
        EXPECT_NE(journal.id(), before);
        EXPECT_EQ(JournalFile::idsIn(ops, recovery), QStringList(journal.id()));
        EXPECT_LT(QFileInfo(journalPath(*document)).size(), 2000);
        EXPECT_EQ(replayed(ops, recovery, journal.id(), job.text),
                  std::optional(document->completeString()));

        ASSERT_TRUE(document->writeToURL(path, document->type()));
        EXPECT_TRUE(journal.id().isEmpty());
        EXPECT_TRUE(JournalFile::idsIn(ops, recovery).isEmpty());
    }
}

TEST_F(EditJournalTest, TellsWhatBecameOfTheFile)
{
    using File = RecoveredDocument::File;
    struct Case
    {
        const char* name;
        std::function<void(const QString& path)> change;
        State state;
        File file;
    };
    const Case cases[]{
        {"unchanged", [](const QString&) {}, State::Text, File::Unchanged},
        {"changed", [this](const QString&) { write("a.txt", "theirs\n"); }, State::Text,
         File::Changed},
        {"gone", [](const QString& path) { QFile::remove(path); }, State::Text, File::Gone},
        {"saved just before the end", [this](const QString&) { write("a.txt", "mine one\n"); },
         State::Nothing, File::Changed},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QString path = write("a.txt", "one\n");
        auto document = open(path);
        document->textStorage().replaceCharactersInRange({0, 0}, u"mine ");
        document->record().lbFormat = int(LineBreakFormat::unixLf);
        const QString id = document->journal().id();
        EXPECT_EQ(recoverJournal(ops, recovery, id).state, State::Nothing) << "it is locked";
        document->journal().leave();
        document.reset();
        c.change(path);
        const RecoveredDocument recovered = recoverJournal(ops, recovery, id);
        EXPECT_EQ(recovered.state, c.state);
        EXPECT_EQ(recovered.file, c.file);
        if (c.state == State::Text) {
            EXPECT_EQ(recovered.document.text->string(), u"mine one\n");
            EXPECT_EQ(recovered.document.path, path);
        }
        EXPECT_EQ(JournalFile::idsIn(ops, recovery).isEmpty(), c.state == State::Nothing);
        (void)ops.remove(JournalFile::pathOf(recovery, id));
    }
}

TEST_F(EditJournalTest, UndoneEditsLeaveNothingToBringBack)
{
    auto document = open(write("a.txt", "one\n"));
    document->undoManager().replaceCharactersInRange({0, 0}, TextSnapshot(u"x"));
    document->undoManager().undo();
    const QString id = document->journal().id();
    ASSERT_FALSE(id.isEmpty());
    document->journal().leave();
    document.reset();
    EXPECT_EQ(recoverJournal(ops, recovery, id).state, State::Nothing);
    EXPECT_TRUE(JournalFile::idsIn(ops, recovery).isEmpty());
}

TEST_F(EditJournalTest, FormIsKeptToo)
{
    auto document = open(write("a.txt", "one\n"));
    document->record().lbFormat = int(LineBreakFormat::windowsCrLf);
    document->changeLBFormatAction(3);
    document->encodingsArrayController().selectNumber(StringEncoding::utf16);
    document->changeEncoding();
    const QString id = document->journal().id();
    document->journal().leave();
    document.reset();
    const RecoveredDocument recovered = recoverJournal(ops, recovery, id);
    ASSERT_EQ(recovered.state, State::Text);
    EXPECT_EQ(recovered.document.record.lbFormat, 3);
    EXPECT_EQ(recovered.document.record.encoding, StringEncoding::utf16);
    EXPECT_TRUE(recovered.document.layout.hasMark);
    EXPECT_EQ(recovered.document.text->string(), u"one\r\n");
}

/// A text and its journal over any file system.
struct JournalledText
{
    explicit JournalledText(FileOps& ops, const JournalForm& form = {})
        : store(ops, QStringLiteral("/home/state/Recovery")),
          journal(storage, ops, store, [form] { return form; })
    {}

    void type(const char* text)
    {
        storage.replaceCharactersInRange({storage.length(), 0}, QString::fromLatin1(text));
    }

    /// Goes last: other threads may still use the file system.
    struct PoolAwaited
    {
        ~PoolAwaited() { backgroundPool().waitForDone(); }
    } awaited;
    TextStorage storage;
    RecoveryStore store;
    EditJournal journal;
};

TEST(JournalPowerCutTest, WhatWasSyncedIsThereInEveryState)
{
    PowerCutFileOps ops;
    ops.makeFile("/home/neighbour.txt", "neighbour");
    JournalledText text(ops);
    QString synced;
    int states = 0;
    const auto check = [&] {
        ops.forEachStateAfterPowerCut([&](PowerCutFileOps& found) {
            ++states;
            const RecoveryStore store(found, text.store.folder());
            const QStringList ids = JournalFile::idsIn(found, store);
            const auto got = ids.isEmpty() ? std::nullopt : replayed(found, store, ids.first());
            const QString have = got ? got->string() : QString();
            EXPECT_TRUE(have.startsWith(synced)) << qPrintable(have);
            EXPECT_TRUE(QStringLiteral("one two three").startsWith(have)) << qPrintable(have);
        });
    };
    ops.setBeforeChange(check);
    for (const char* piece : {"one ", "two ", "three"}) {
        text.type(piece);
        check();
        ASSERT_TRUE(text.journal.flush());
        synced = text.storage.snapshot().string();
        check();
    }
    ops.setBeforeChange({});
    EXPECT_GT(states, 30);
}

TEST(JournalFaultTest, NoFailureOfTheDiskLosesTextOrStaysUntold)
{
    int calls = 1;
    for (int call = 1; call <= calls && !testing::Test::HasFailure(); ++call) {
        for (const int error : {EIO, ENOSPC, EACCES, EINTR, FaultyFileOps::shortWrite}) {
            for (const bool persistent : {false, true}) {
                SCOPED_TRACE(testing::Message() << "call " << call << " error " << error
                                                << (persistent ? " for good" : ""));
                if (persistent && (error == EINTR || error == FaultyFileOps::shortWrite))
                    continue;
                PowerCutFileOps real;
                real.makeFile("/home/neighbour.txt", "neighbour");
                FaultyFileOps ops(real, {call, error, persistent}, FaultyFileOps::Syncing::Real);
                JournalledText text(ops);
                const QSignalSpy failed(&text.journal, &EditJournal::failed);
                const QSignalSpy recovered(&text.journal, &EditJournal::recovered);
                text.type("one ");
                text.type("two ");
                (void)text.journal.flush();
                text.type("three");
                // What failed once is tried again.
                const bool isSafe = text.journal.flush() || text.journal.flush();
                calls = std::max(calls, ops.calls());
                EXPECT_EQ(text.storage.snapshot().string(), u"one two three");
                EXPECT_LE(failed.size(), 2);
                if (isSafe) {
                    EXPECT_EQ(replayed(real, text.store, text.journal.id()),
                              std::optional(text.storage.snapshot()));
                    EXPECT_EQ(recovered.size(), failed.size());
                } else {
                    EXPECT_TRUE(persistent);
                    EXPECT_GE(failed.size(), 1);
                }
            }
        }
    }
    EXPECT_GT(calls, 10);
}

TEST(JournalFaultTest, OldJournalStaysUntilTheWholeTextIsKept)
{
    // Longer than what a journal holds at first, and soon short enough to be written at once.
    const TextSnapshot base(QString((1 << 19) + 10, u'b'));
    bool isDone = false;
    for (int call = 1; !isDone; ++call) {
        ASSERT_LT(call, 200);
        SCOPED_TRACE(testing::Message() << "call " << call);
        PowerCutFileOps real;
        real.makeFile("/home/neighbour.txt", "neighbour");
        JournalForm form;
        form.path = QStringLiteral("/home/large.txt");
        FaultyFileOps ops(real, {call, ENOSPC, true}, FaultyFileOps::Syncing::Real);
        JournalledText text(ops, form);
        {
            const EditJournal::NewBase newBase(text.journal);
            text.storage.replaceCharactersInRange({0, 0}, base);
        }
        const QSignalSpy failed(&text.journal, &EditJournal::failed);
        text.storage.replaceCharactersInRange({base.length() - 30, 30}, u"one ");
        text.journal.keepText();
        text.type("two ");
        (void)text.journal.flush();
        backgroundPool().waitForDone();
        text.type("three");
        const bool isSafe = text.journal.flush();
        backgroundPool().waitForDone();
        isDone = ops.calls() < call;
        EXPECT_EQ(isSafe, failed.isEmpty());
        const QStringList ids = JournalFile::idsIn(real, text.store);
        if (isSafe) {
            ASSERT_EQ(ids, QStringList(text.journal.id()));
            EXPECT_EQ(replayed(real, text.store, ids[0]), std::optional(text.storage.snapshot()));
            continue;
        }
        // What the disk took is there, in one or the other.
        for (const QString& id : ids) {
            const auto got = replayed(real, text.store, id, base);
            ASSERT_TRUE(got);
            EXPECT_TRUE(*got == base || text.storage.snapshot().string().startsWith(got->string()));
            EXPECT_GE(got->length(), base.length() - 30);
        }
    }
}

} // namespace
} // namespace quillory
