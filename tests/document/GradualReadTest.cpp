#include "DocumentFixture.h"

#include "document/GradualRead.h"
#include "text/TextEncoder.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillory::test {
namespace {

using namespace std::chrono_literals;

/// Everything in pieces so small that each kind of character is cut somewhere.
GradualRead::Options smallPieces(qsizetype beginning = 64, qsizetype part = 61)
{
    GradualRead::Options options;
    options.least = ByteCount(1);
    options.beginning = ByteCount(beginning);
    options.part = ByteCount(part);
    options.interval = 0ms;
    return options;
}

struct GradualReadTest : DocumentFixture
{
    const std::atomic_bool goesOn = false;

    /// Reads to the end, keeping to what a window does with it.
    GradualRead::Outcome finish(GradualRead& read, TextSnapshot* shown = nullptr)
    {
        TextSnapshot text = read.beginning().text.value_or(TextSnapshot());
        double share = 0;
        auto outcome = read.finish(goesOn, [&](const GradualRead::Progress& progress) {
            text = text.replacing({text.length(), 0}, progress.text);
            EXPECT_GT(progress.share, share);
            EXPECT_LE(progress.share, 1);
            share = progress.share;
        });
        if (shown)
            *shown = text;
        return outcome;
    }

    void expectSameAsAtOnce(const QString& path, const GradualRead::Options& options)
    {
        const ReadResult atOnce = readDocument(path, DocumentType::text);
        const auto read = GradualRead::begin(path, options);
        ASSERT_TRUE(read);
        TextSnapshot shown;
        const GradualRead::Outcome outcome = finish(*read, &shown);
        const ReadResult& result = outcome.result;
        EXPECT_EQ(result.answer, atOnce.answer);
        EXPECT_EQ(result.record.encoding, atOnce.record.encoding);
        EXPECT_EQ(result.layout, atOnce.layout);
        EXPECT_EQ(result.format, atOnce.format);
        EXPECT_EQ(result.lineBreaks, atOnce.lineBreaks);
        EXPECT_EQ(result.encodesBack, atOnce.encodesBack);
        EXPECT_EQ(result.hasEncodingAttribute, atOnce.hasEncodingAttribute);
        EXPECT_EQ(result.type, atOnce.type);
        EXPECT_EQ(result.identity.modifiedNanos, atOnce.identity.modifiedNanos);
        ASSERT_EQ(result.text.has_value(), atOnce.text.has_value());
        if (!result.text) {
            EXPECT_EQ(result.record.dataFromFile->view(), atOnce.record.dataFromFile->view());
            return;
        }
        EXPECT_TRUE(*result.text == *atOnce.text);
        ASSERT_LE(outcome.kept, shown.length());
        EXPECT_TRUE(shown.slice({0, outcome.kept}) == result.text->slice({0, outcome.kept}));
    }
};

TEST_F(GradualReadTest, endsWithWhatReadingAtOnceAnswers)
{
    const struct
    {
        StringEncoding encoding;
        ByteLayout layout;
        const char16_t* line;
    } cases[]{
        {StringEncoding::ascii, {}, u"plain as a pikestaff\r\n"},
        {StringEncoding::utf8, {}, u"Größe €, 日本語, \U0001F600\U00010348\r\n"},
        {StringEncoding::utf8, {.hasMark = true}, u"naïve 語\U0001F600\n"},
        {StringEncoding::utf16, {.hasMark = true}, u"wide \U0001F600 日本語\r\n"},
        {StringEncoding::utf16, {.hasMark = true, .bigEndian = true}, u"wide \U0001F600Ċਕ\n"},
        {StringEncoding::utf16LittleEndian, {}, u"no mark at all, only zero bytes\n"},
        {StringEncoding::utf16BigEndian, {.bigEndian = true}, u"no mark at all, zero bytes\r"},
        {StringEncoding::utf32, {.hasMark = true}, u"wider \U0001F600\r\n"},
        {StringEncoding::utf32, {.hasMark = true, .bigEndian = true}, u"wider 語\n"},
        {StringEncoding::windowsLatin1, {}, u"Größenwahn und Übermut tut selten gut\r\n"},
        {StringEncoding::shiftJis, {}, u"日本語の文字は二つのバイトで書かれています。ソ表\n"},
        {StringEncoding::iso2022Jp, {}, u"日本語の文字 and back to ASCII\r\n"},
    };
    int number = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(++number);
        QByteArray bytes;
        const TextSnapshot text(QString::fromUtf16(c.line).repeated(40));
        ASSERT_FALSE(encode(text, c.encoding, c.layout, [&](QByteArrayView piece) {
            bytes += piece;
            return true;
        }));
        const QString path = write("a.txt", bytes);
        for (int more = 0; more < 9; ++more)
            expectSameAsAtOnce(path, smallPieces(64 + more, 61 - more));
    }
}

TEST_F(GradualReadTest, understandsTheBeginningThoughACharacterIsCut)
{
    const QString line = QStringLiteral("語\U0001F600ö ");
    for (const StringEncoding encoding : {StringEncoding::utf8, StringEncoding::utf16}) {
        const TextSnapshot text(line.repeated(100));
        const QString path = write("a.txt", *encoded(text, encoding));
        for (qsizetype beginning = 64; beginning < 80; ++beginning) {
            const auto read = GradualRead::begin(path, smallPieces(beginning));
            ASSERT_TRUE(read && read->beginning().text) << beginning;
            EXPECT_EQ(read->beginning().record.encoding, encoding);
            const TextSnapshot& first = *read->beginning().text;
            EXPECT_GT(first.length(), 8);
            EXPECT_TRUE(text.slice(first.range()) == first);
            TextSnapshot shown;
            const auto outcome = finish(*read, &shown);
            EXPECT_EQ(outcome.kept, shown.length());
            EXPECT_GT(shown.length(), text.length() / 2) << "the text grew while it was read";
        }
    }
}

TEST_F(GradualReadTest, laterBytesMayTellAnotherEncoding)
{
    const QByteArray ascii = QByteArray("all of this is plain\n").repeated(20);
    const QByteArray utf8 = QByteArray("viel Gr\xC3\xB6\xC3\x9F\x65re\n").repeated(20);
    const QByteArray latin1 =
        QByteArray("\x93Gr\xF6\xDF\x65\x94 und \xDC\x62\x65rmut\n").repeated(20);
    const QByteArray binary("\0\x81\xFF\0\1\2\3", 7);
    const struct
    {
        QByteArray bytes;
        StringEncoding first;
        StringEncoding last;
        TextOffset kept;
    } cases[]{
        {ascii + utf8, StringEncoding::utf8, StringEncoding::utf8, 420},
        {ascii + latin1, StringEncoding::utf8, StringEncoding::windowsLatin1, 366},
        {utf8 + latin1, StringEncoding::utf8, StringEncoding::windowsLatin1, 7},
        {ascii + binary, StringEncoding::utf8, StringEncoding::none, 0},
        {ascii + "\x1B$B\x46|\x1B(B\n" + ascii, StringEncoding::utf8, StringEncoding::iso2022Jp,
         366},
    };
    for (const auto& c : cases) {
        const QString path = write("a.txt", c.bytes);
        const auto read = GradualRead::begin(path, smallPieces());
        ASSERT_TRUE(read);
        EXPECT_EQ(read->beginning().record.encoding, c.first);
        const auto outcome = finish(*read);
        EXPECT_TRUE(outcome.result.answer);
        EXPECT_EQ(outcome.result.record.encoding, c.last);
        EXPECT_GE(outcome.kept, c.kept) << c.bytes.constData();
        expectSameAsAtOnce(path, smallPieces());
    }
}

TEST_F(GradualReadTest, failsAsAWhole)
{
    const QByteArray bytes = QByteArray("0123456789\n").repeated(100);
    const QString path = write("a.txt", bytes);
    const struct
    {
        int error; ///< 0: the file ends early
        const char* cause;
    } cases[]{{EIO, "Input/output error"}, {0, "shortened"}, {ECANCELED, ""}};
    for (const auto& c : cases) {
        for (qsizetype good = 64; good < bytes.size(); good += 61) {
            std::atomic_bool cancelled = false;
            GradualRead::Options options = smallPieces();
            qsizetype served = 0;
            options.read = [&](int descriptor, char* target, size_t size) -> ssize_t {
                const size_t room = size_t(good - served);
                if (room == 0 && c.error != ECANCELED) {
                    errno = c.error;
                    return c.error != 0 ? -1 : 0;
                }
                cancelled = room == 0;
                const ssize_t got =
                    ::read(descriptor, target, room == 0 ? size : std::min(size, room));
                served += room == 0 ? 0 : got;
                return got;
            };
            const auto read = GradualRead::begin(path, options);
            ASSERT_TRUE(read);
            TextSnapshot shown = *read->beginning().text;
            const auto outcome =
                read->finish(cancelled, [&](const auto& progress) { shown = progress.text; });
            EXPECT_FALSE(outcome.result.answer) << good;
            EXPECT_FALSE(outcome.result.text);
            EXPECT_FALSE(outcome.result.record.dataFromFile);
            EXPECT_TRUE(outcome.result.message.contains(QString::fromUtf8(c.cause)))
                << qPrintable(outcome.result.message);
        }
    }
}

TEST_F(GradualReadTest, saysNoToMoreThanThereIsMemoryFor)
{
    const QString path = write("huge.txt", "text\n");
    QFile file(path);
    if (!file.resize(qint64(1) << 43))
        GTEST_SKIP() << "this disk has no files with holes of 8 TB";
    GradualRead::Options options = smallPieces();
    bool isBeginning = true;
    options.read = [&](int descriptor, char* target, size_t size) -> ssize_t {
        errno = EIO; // where the memory is granted all the same
        return std::exchange(isBeginning, false) ? ::read(descriptor, target, size) : -1;
    };
    const auto read = GradualRead::begin(path, options);
    ASSERT_TRUE(read);
    const auto outcome = finish(*read);
    EXPECT_FALSE(outcome.result.answer);
    EXPECT_FALSE(outcome.result.message.isEmpty());
}

TEST_F(GradualReadTest, takesAGrowingFileAsItWas)
{
    const QByteArray bytes = QByteArray("entry of a log\n").repeated(50);
    const QString path = write("a.log", bytes);
    const auto read = GradualRead::begin(path, smallPieces());
    ASSERT_TRUE(read);
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::Append) && file.write("one more\n") > 0);
    file.close();
    const auto outcome = finish(*read);
    ASSERT_TRUE(outcome.result.text);
    EXPECT_EQ(outcome.result.text->length(), bytes.size());
    struct stat status = {};
    ASSERT_EQ(stat(qPrintable(path), &status), 0);
    EXPECT_FALSE(outcome.result.identity.matches(status)) << "a save must ask";
}

TEST_F(GradualReadTest, leavesEverythingElseToReadingAtOnce)
{
    GradualRead::Options options = smallPieces();
    options.least = ByteCount(1000);
    EXPECT_FALSE(GradualRead::begin(write("small.txt", QByteArray(999, 'x')), options));
    EXPECT_TRUE(GradualRead::begin(write("large.txt", QByteArray(1000, 'x')), options));
    EXPECT_FALSE(GradualRead::begin(file("missing.txt"), options));
    options.least = ByteCount(0);
    EXPECT_FALSE(GradualRead::begin(folder.path(), options));
    ASSERT_EQ(mkfifo(qPrintable(file("pipe")), 0600), 0);
    EXPECT_FALSE(GradualRead::begin(file("pipe"), options)) << "and does not wait for a writer";
}

// The document that is being loaded

struct LoadingDocumentTest : GradualReadTest
{
    std::unique_ptr<Document> begin(const GradualRead& read)
    {
        auto document = std::make_unique<Document>(environment);
        document->adoptBeginning(read.beginning());
        document->windowControllerDidLoadNib(nullptr);
        return document;
    }
};

TEST_F(LoadingDocumentTest, isNeitherEditedNorSavedBeforeAllIsThere)
{
    const QByteArray bytes = QByteArray("one line\r\n").repeated(100);
    const QString path = write("a.txt", bytes);
    const auto read = GradualRead::begin(path, smallPieces());
    const auto document = begin(*read);
    const auto expectUntouchable = [&] {
        EXPECT_TRUE(document->isLoading());
        document->textView().insertText(QStringLiteral("typed"));
        document->textView().deleteForward();
        EXPECT_FALSE(document->textView().shouldChangeTextInRange({0, 1}, {}));
        EXPECT_FALSE(document->isDocumentEdited());
        EXPECT_FALSE(document->undoManager().canUndo());
        for (const QString& target : {path, file("other.txt")}) {
            SaveResult result;
            document->writeToURL(target, document->type(), &result);
            EXPECT_EQ(result.problem, SaveProblem::Incomplete);
            EXPECT_FALSE(result.written);
            EXPECT_TRUE(result.recoveryRecord.isEmpty());
        }
        EXPECT_FALSE(QFile::exists(file("other.txt")));
    };
    expectUntouchable();
    const TextRange selected{2, 5};
    document->textView().setSelectedRange(selected);
    const auto outcome = read->finish(goesOn, [&](const GradualRead::Progress& progress) {
        document->takeMore(progress.text);
        expectUntouchable();
    });
    document->finishLoading(outcome);
    EXPECT_FALSE(document->isLoading());
    EXPECT_EQ(textOf(*document), bytes.toStdString());
    EXPECT_EQ(readBytes(path), bytes);
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_FALSE(document->undoManager().canUndo());
    EXPECT_EQ(document->textView().selectedRange(), selected);
    EXPECT_EQ(document->record().lbFormat, int(LineBreakFormat::windowsCrLf));
    EXPECT_EQ(document->lineBreaksOnDisk().crLf, 100);

    document->textView().insertText(QStringLiteral("typed"));
    EXPECT_TRUE(document->isDocumentEdited());
    document->textView().undo();
    EXPECT_EQ(textOf(*document), bytes.toStdString());
    EXPECT_FALSE(document->isDocumentEdited());
    SaveResult result;
    document->writeToURL(path, document->type(), &result);
    EXPECT_TRUE(result.written);
    EXPECT_EQ(readBytes(path), bytes);
}

TEST_F(LoadingDocumentTest, keepsThePlaceInATextThatTurnsOutToBeAnother)
{
    // As UTF-8 the second line is shorter than in the encoding that the last byte leaves.
    const QByteArray bytes = QByteArray("first\nzw\xC3\xB6lf Gr\xC3\xB6\xC3\x9F\x65n\nthird\n") +
                             QByteArray("filling\n").repeated(50) + "\xFF\n";
    const auto read = GradualRead::begin(write("a.txt", bytes), smallPieces(96));
    const auto document = begin(*read);
    ASSERT_EQ(document->record().encoding, StringEncoding::utf8);
    const TextOffset third = document->completeString().lineStart(LineIndex(2));
    document->textView().setSelectedRange({third, 0});
    document->finishLoading(finish(*read));
    EXPECT_EQ(document->record().encoding, StringEncoding::windowsLatin1);
    EXPECT_EQ(document->completeString().length(), bytes.size());
    EXPECT_EQ(document->textView().selectedRange().location,
              document->completeString().lineStart(LineIndex(2)));
    EXPECT_GT(document->textView().selectedRange().location, third);
    EXPECT_FALSE(document->isDocumentEdited());
}

TEST_F(LoadingDocumentTest, showsNothingOfBytesThatAreNoTextAfterAll)
{
    const QByteArray bytes =
        QByteArray("looks like text\n").repeated(20) + QByteArray("\0\1\xFF", 3);
    const QString path = write("a.txt", bytes);
    const auto read = GradualRead::begin(path, smallPieces());
    const auto document = begin(*read);
    EXPECT_FALSE(document->isUndecoded());
    document->finishLoading(finish(*read));
    EXPECT_TRUE(document->isUndecoded());
    EXPECT_EQ(textOf(*document), "");
    EXPECT_FALSE(document->textView().isEditable());
    document->encodingsArrayController().selectNumber(StringEncoding::isoLatin1);
    document->changeEncodingAction();
    EXPECT_EQ(document->completeString().length(), bytes.size());
}

} // namespace
} // namespace quillory::test
