// Real bytes of many encodings and line breaks: opened, edited, saved, and compared byte for byte.

#include "document/DocumentFixture.h"

#include "text/TextEncoder.h"

namespace quillory {
namespace {

struct Sample
{
    const char* name;
    StringEncoding encoding;
    const char* text; // UTF-8, LF
};

const Sample samples[] = {
    {"ascii", StringEncoding::utf8, "plain\nascii\n"},
    {"utf8", StringEncoding::utf8, "grüße — 日本語 😀\nzwei\n"},
    {"utf16", StringEncoding::utf16, "grüße 日本語 😀\nzwei\n"},
    {"utf32", StringEncoding::utf32, "grüße 😀\nzwei\n"},
    {"latin1", StringEncoding::isoLatin1,
     "Der Fluß fließt über große Steine, schön und früh am "
     "Tag, während Bäume blühen.\nÜbermäßige Größe\n"},
    {"windows-1252", StringEncoding::windowsLatin1,
     "It’s “quoted” — the café’s naïve façade costs €5.\nDéjà vu, garçon…\n"},
    {"shift_jis", StringEncoding::shiftJis,
     "これは日本語の文章です。漢字とひらがなとカタカナが混ざっています。\nテキストエディタ\n"},
    {"windows-1251", StringEncoding(11),
     "Съешь же ещё этих мягких французских булок, да выпей чаю.\nПривет, мир!\n"},
    {"euc-jp", StringEncoding(3),
     "これは日本語の文章です。漢字とひらがなとカタカナが混ざっています。\nテキスト\n"},
    {"gb18030", StringEncoding(0x80000632),
     "这是一个中文文本文件，用于测试编辑器的编码检测功能。\n你好，世界！\n"},
    {"big5", StringEncoding(0x80000a03),
     "這是一個中文文字檔案，用來測試編輯器的編碼偵測功能。\n你好，世界！\n"},
    {"euc-kr", StringEncoding(0x80000940),
     "이것은 편집기의 인코딩 감지 기능을 시험하기 위한 한국어 문장입니다.\n안녕하세요\n"},
    {"koi8-r", StringEncoding(0x80000a02),
     "Съешь же ещё этих мягких французских булок, да выпей чаю.\nПривет, мир!\n"},
};

QByteArray bytesOf(const Sample& sample, LineBreakFormat format)
{
    const TextSnapshot text = converted(TextSnapshot(QString::fromUtf8(sample.text)), format);
    const std::optional<QByteArray> bytes = encoded(text, sample.encoding);
    EXPECT_TRUE(bytes) << sample.name;
    return bytes.value_or(QByteArray());
}

using RealFilesTest = test::DocumentFixture;

TEST_F(RealFilesTest, OpenEditSaveKeepsEveryByteThatWasNotEdited)
{
    for (const Sample& sample : samples) {
        for (const int format : {1, 2, 3}) {
            SCOPED_TRACE(sample.name + std::string(" format ") + std::to_string(format));
            const QByteArray bytes = bytesOf(sample, LineBreakFormat(format));
            const QString path = write("file.txt", bytes);
            const auto document = open(path);
            ASSERT_TRUE(document);
            // What holds no character beyond ASCII is UTF-8 as well; all else must be found out.
            ASSERT_EQ(document->record().encoding, sample.encoding);
            ASSERT_EQ(document->record().lbFormat, format);
            ASSERT_FALSE(document->isDocumentEdited());

            SaveResult result;
            EXPECT_TRUE(document->writeToURL(path, document->type(), &result));
            EXPECT_TRUE(result.written) << result.message.toStdString();
            EXPECT_EQ(test::readBytes(path), bytes);

            document->textView().setSelectedRange({document->completeString().length(), 0});
            document->textView().insertText(QStringLiteral("end\nof it"));
            EXPECT_TRUE(document->isDocumentEdited());
            EXPECT_TRUE(document->writeToURL(path, document->type(), &result));
            EXPECT_FALSE(document->isDocumentEdited());
            const std::string longer = sample.text + std::string("end\nof it");
            EXPECT_EQ(test::readBytes(path), bytesOf({sample.name, sample.encoding, longer.c_str()},
                                                     LineBreakFormat(format)));

            document->textView().undo();
            EXPECT_TRUE(document->isDocumentEdited());
            EXPECT_TRUE(document->writeToURL(path, document->type(), &result));
            EXPECT_EQ(test::readBytes(path), bytes);
        }
    }
}

TEST_F(RealFilesTest, WhatNumbersDoNotTellIsKeptToo)
{
    const std::pair<const char*, QByteArray> cases[] = {
        {"UTF-8 with a mark", "\xEF\xBB\xBFone\n"},
        {"UTF-16, big-endian with a mark", QByteArray("\xFE\xFF\0o\0n\0e\0\n", 10)},
        {"UTF-16, little-endian with a mark", QByteArray("\xFF\xFEo\0n\0e\0\n\0", 10)},
        {"no final newline", "a\r\nb"},
        {"empty", ""},
        {"line separators", "a\xE2\x80\xA8"
                            "b\xE2\x80\xA9"
                            "c\x0B\x0C\xC2\x85"},
        {"controls", QByteArray("\x1B[1mbold\x1B[0m\t\x01", 14)},
    };
    for (const auto& [name, bytes] : cases) {
        const QString path = write("file.txt", bytes);
        const auto document = open(path);
        ASSERT_TRUE(document) << name;
        ASSERT_FALSE(document->isUndecoded()) << name;
        EXPECT_TRUE(document->writeToURL(path, document->type()));
        EXPECT_EQ(test::readBytes(path), bytes) << name;
    }
}

TEST_F(RealFilesTest, MixedBreaksAreCountedAndBecomeOne)
{
    const QString path = write("file.txt", "a\nb\r\nc\rd\r\n");
    const auto document = open(path);
    EXPECT_EQ(document->lineBreaksOnDisk(), (LineBreakCounts{1, 1, 2, 0}));
    EXPECT_TRUE(document->lineBreaksOnDisk().isMixed());
    EXPECT_TRUE(document->writeToURL(path, document->type()));
    EXPECT_EQ(test::readBytes(path), "a\r\nb\r\nc\r\nd\r\n");
    EXPECT_EQ(textOf(*document), "a\nb\r\nc\rd\r\n"); // the text view is not changed
    EXPECT_FALSE(document->lineBreaksOnDisk().isMixed());
}

TEST_F(RealFilesTest, BytesThatAreNoTextAreNeverWrittenOver)
{
    QByteArray bytes("\x7F"
                     "ELF\x02\x01\0\0\xFF\xFE\0\0\x90\0",
                     14);
    bytes += QByteArray(200, '\0') + QByteArray("\x81\xFF\x00\x01", 4);
    const QString path = write("program", bytes);
    const auto document = open(path);
    ASSERT_TRUE(document); // opens empty
    EXPECT_EQ(document->record().encoding, StringEncoding::none);
    EXPECT_TRUE(document->isUndecoded());
    EXPECT_EQ(textOf(*document), "");
    document->textView().insertText(QStringLiteral("oops"));
    SaveResult result;
    document->writeToURL(path, document->type(), &result);
    EXPECT_EQ(result.problem, SaveProblem::NoEncoding);
    EXPECT_EQ(test::readBytes(path), bytes);
    EXPECT_TRUE(document->isDocumentEdited());

    // Choosing an encoding opens the bytes in it, where they are text in it.
    document->encodingsArrayController().selectNumber(StringEncoding::ascii);
    document->changeEncodingAction();
    EXPECT_TRUE(document->isUndecoded());
    document->encodingsArrayController().selectNumber(StringEncoding::isoLatin1);
    document->changeEncodingAction();
    EXPECT_EQ(document->completeString().length(), bytes.size());
    EXPECT_FALSE(document->isUndecoded());
    EXPECT_FALSE(document->isDocumentEdited());
    document->writeToURL(path, document->type(), &result);
    EXPECT_TRUE(result.written);
    EXPECT_EQ(test::readBytes(path), bytes);
}

} // namespace
} // namespace quillory
