#include "document/TECSniffer.h"

#include "document/WebEncodings.h"
#include "support/Folders.h"
#include "text/TextDecoder.h"
#include "text/TextEncoder.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using enum StringEncoding;

constexpr auto windowsCyrillic = StringEncoding(11);
constexpr auto koi8R = StringEncoding(0x80000a02);
constexpr auto gb18030 = StringEncoding(0x80000632);

QString textIn(const char* language)
{
    QFile file(QStringLiteral(QUILLORY_SOURCE_DIR "/tests/document/data/languages/%1.txt")
                   .arg(QLatin1StringView(language)));
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << language;
    return QString::fromUtf8(file.readAll());
}

/// Stretches of a text, each the shortest that takes \a bytes in \a encoding, from every
/// twentieth unit on; none where the text does not fit.
std::vector<QByteArray> samples(const QString& text, StringEncoding encoding, qsizetype bytes)
{
    std::vector<QByteArray> result;
    for (qsizetype start = 0; start < text.size(); start += 20) {
        for (qsizetype length = bytes / 4; start + length <= text.size(); ++length) {
            const auto sample =
                encoded(TextSnapshot(QStringView(text).mid(start, length)), encoding);
            if (!sample)
                return {};
            if (sample->size() >= bytes) {
                result.push_back(*sample);
                break;
            }
        }
    }
    return result;
}

struct Row
{
    StringEncoding encoding;
    std::vector<const char*> languages;
};

std::vector<Row> measuredEncodings()
{
    const std::vector<const char*> western{"de", "en", "fr", "es", "pt",
                                           "it", "sv", "da", "fi", "is"};
    const std::vector<const char*> central{"cs", "sk", "pl", "hu", "ro", "hr", "de"};
    const std::vector<const char*> all{"de", "fr", "cs", "tr", "ru",      "el",      "he",
                                       "ar", "th", "vi", "ja", "zh-Hans", "zh-Hant", "ko"};
    return {
        {utf8, all},
        {utf16LittleEndian, all},
        {utf16BigEndian, all},
        {windowsLatin1, western},
        {isoLatin1, western},
        {StringEncoding(0x8000020f), western},
        {StringEncoding(30), western},
        {StringEncoding(0x80000410), western},
        {StringEncoding(15), central},
        {StringEncoding(9), central},
        {StringEncoding(0x80000507), {"et", "lv", "lt"}},
        {StringEncoding(14), {"tr"}},
        {StringEncoding(0x80000209), {"tr"}},
        {windowsCyrillic, {"ru", "uk", "be", "bg", "sr"}},
        {StringEncoding(0x80000205), {"ru", "be", "bg", "sr"}},
        {koi8R, {"ru", "bg"}},
        {StringEncoding(0x80000a08), {"uk", "ru"}},
        {StringEncoding(0x8000041b), {"ru", "bg"}},
        {StringEncoding(7 | 0x80000000), {"ru", "uk"}},
        {StringEncoding(13), {"el"}},
        {StringEncoding(0x80000207), {"el"}},
        {StringEncoding(0x80000505), {"he"}},
        {StringEncoding(0x80000208), {"he"}},
        {StringEncoding(0x80000506), {"ar"}},
        {StringEncoding(0x80000206), {"ar"}},
        {StringEncoding(0x8000041d), {"th"}},
        {shiftJis, {"ja"}},
        {StringEncoding(3), {"ja"}},
        {iso2022Jp, {"ja"}},
        {gb18030, {"zh-Hans", "zh-Hant"}},
        {StringEncoding(0x80000930), {"zh-Hans"}},
        {hz, {"zh-Hans"}},
        {StringEncoding(0x80000a03), {"zh-Hant"}},
        {StringEncoding(0x80000940), {"ko"}},
        {iso2022Kr, {"ko"}},
    };
}

/// The same sentences in many languages and encodings: a guess is right when the bytes come to the
/// same text as in the encoding that they were made in.
TEST(TECSniffer, FirstGuessOfShortTextsIsRight)
{
    std::optional<TECSniffer> sniffer = TECSniffer::init();
    ASSERT_TRUE(sniffer);
    for (const qsizetype bytes : {200, 300}) {
        qsizetype tried = 0;
        qsizetype right = 0;
        for (const Row& row : measuredEncodings()) {
            qsizetype triedHere = 0;
            qsizetype rightHere = 0;
            QByteArray wrong;
            for (const char* language : row.languages) {
                for (const QByteArray& sample : samples(textIn(language), row.encoding, bytes)) {
                    sniffer->clear();
                    const StringEncoding guess = sniffer->sniff(sample).constFirst();
                    const bool isRight = decode(ByteBuffer(sample), guess) ==
                                         decode(ByteBuffer(sample), row.encoding);
                    ++triedHere;
                    rightHere += isRight;
                    if (!isRight)
                        wrong += ' ' + QByteArray(language) + ": " + displayName(guess).toLatin1();
                }
            }
            EXPECT_GT(triedHere, 0) << displayName(row.encoding).toStdString();
            std::printf("%3d bytes  %-34s %3d of %3d%s\n", int(bytes),
                        displayName(row.encoding).toLatin1().data(), int(rightHere), int(triedHere),
                        wrong.data());
            EXPECT_GE(double(rightHere), 0.8 * double(triedHere))
                << displayName(row.encoding).toStdString();
            tried += triedHere;
            right += rightHere;
        }
        std::printf("%3d bytes  all: %d of %d, %.1f %%\n", int(bytes), int(right), int(tried),
                    100.0 * double(right) / double(tried));
        EXPECT_GE(double(right), 0.95 * double(tried));
    }
}

TEST(TECSniffer, AFewWordsDo)
{
    struct Case
    {
        StringEncoding encoding;
        QStringView text;
    };
    const Case cases[] = {
        {isoLatin1, u"/* Copyright © 2003 */\nint main() { return 0; }\n"},
        {isoLatin1, u"temp: 20°C ± 2\n"},
        {isoLatin1, u"München"},
        {windowsLatin1, u"• one\n• two – three\n"},
        {windowsLatin1, u"Price: 5 €\n"},
        {koi8R, u"Привет\n"},
        {windowsCyrillic, u"# комментарий\nprint(\"hello world\")\n"},
        {StringEncoding(0x80000505), u"שלום עולם\n"},
        {shiftJis, u"// 日本語のコメント\nint x = 5;\n"},
        {StringEncoding(3), u"// 日本語のコメント\nint x = 5;\n"},
        {gb18030, u"// 这是注释\nint x;\n"},
        {StringEncoding(0x80000a03), u"// 這是註解\n"},
        {StringEncoding(0x80000940), u"안녕하세요\n"},
        {StringEncoding(9), u"Zażółć gęślą jaźń\n"},
    };
    std::optional<TECSniffer> sniffer = TECSniffer::init();
    ASSERT_TRUE(sniffer);
    for (const Case& c : cases) {
        sniffer->clear();
        const StringEncoding guess =
            sniffer->sniff(encoded(TextSnapshot(c.text), c.encoding).value_or("")).constFirst();
        EXPECT_EQ(displayName(guess), displayName(c.encoding)) << c.text.toUtf8().data();
    }
}

TEST(TECSniffer, AnswersEveryCandidateTheBestFirst)
{
    std::optional<TECSniffer> sniffer = TECSniffer::init();
    ASSERT_TRUE(sniffer);
    const QList<StringEncoding> ascii = sniffer->sniff("plain text, and nothing else\n");
    EXPECT_EQ(ascii.constFirst(), utf8);
    EXPECT_EQ(ascii.size(), qsizetype(knownEncodings().size()) - 1); // one is not for streams
    for (const EncodingInfo& info : knownEncodings())
        EXPECT_EQ(ascii.count(info.encoding), info.encoding == nonLossyAscii ? 0 : 1)
            << info.displayName;

    sniffer->clear();
    const auto ranked = sniffer->ranked("caf\xE9 cr\xE8me\n");
    EXPECT_EQ(ranked.front().encoding, isoLatin1);
    EXPECT_EQ(ranked.front().errors, 0);
    const auto errorsOf = [&](StringEncoding encoding) {
        return std::find_if(ranked.begin(), ranked.end(),
                            [&](const auto& each) { return each.encoding == encoding; })
            ->errors;
    };
    EXPECT_EQ(errorsOf(utf8), 2);
    EXPECT_EQ(errorsOf(StringEncoding::ascii), 2);
}

TEST(TECSniffer, BearsTheTextInMindUntilCleared)
{
    std::optional<TECSniffer> sniffer = TECSniffer::init();
    ASSERT_TRUE(sniffer);
    const auto sniff = [&](const QByteArray& bytes) { return sniffer->sniff(bytes).constFirst(); };
    const QByteArray russian = *encoded(TextSnapshot(textIn("ru")), koi8R);
    EXPECT_EQ(sniff(russian), koi8R);
    EXPECT_EQ(sniff("and now in ASCII"), koi8R);
    sniffer->clear();
    EXPECT_EQ(sniff("and now in ASCII"), utf8);

    // A character may be cut in two by the pieces.
    const QByteArray chinese = *encoded(TextSnapshot(textIn("zh-Hans")), gb18030);
    sniffer->clear();
    for (qsizetype at = 0; at < chinese.size(); at += 7)
        sniffer->sniff(chinese.mid(at, 7));
    const auto ranked = sniffer->ranked("");
    EXPECT_EQ(ranked.front().encoding, gb18030);
    EXPECT_EQ(ranked.front().errors, 0);
}

TEST(TECSniffer, WebEncodingsGoByTheLocale)
{
    struct Case
    {
        const char* locale;
        StringEncoding encoding; ///< next to UTF-8
        const char* language;
    };
    const Case cases[] = {
        {"ru_RU", windowsCyrillic, "ru"},    {"ja_JP", shiftJis, "ja"},
        {"zh_CN", gb18030, "zh-Hans"},       {"zh_TW", StringEncoding(0x80000a03), "zh-Hant"},
        {"tr_TR", StringEncoding(14), "tr"}, {"fr_FR", windowsLatin1, "en"},
        {"C", windowsLatin1, "en"},
    };
    for (const Case& c : cases) {
        const QLocale locale(QString::fromLatin1(c.locale));
        const std::vector<StringEncoding> encodings = webTextEncodings(locale);
        EXPECT_EQ(encodings[0], utf8);
        EXPECT_EQ(encodings[1], c.encoding) << c.locale;
        EXPECT_EQ(std::count(encodings.begin(), encodings.end(), none), 0) << c.locale;
        std::optional<TECSniffer> sniffer = TECSniffer::initWithWebTextEncodings(locale);
        ASSERT_TRUE(sniffer);
        const auto guesses = sniffer->sniff(*encoded(TextSnapshot(textIn(c.language)), c.encoding));
        EXPECT_EQ(guesses.constFirst(), c.encoding) << c.locale;
        EXPECT_EQ(size_t(guesses.size()), encodings.size());
    }
}

TEST(TECSniffer, NoEncodingFits)
{
    std::optional<TECSniffer> sniffer =
        TECSniffer::initWithWebTextEncodings(QLocale(QStringLiteral("ja_JP")));
    ASSERT_TRUE(sniffer);
    const QByteArray noise = QByteArray("\x81\xFF\x00\x8D\xFE\xFF\xFF\x90", 8).repeated(9);
    EXPECT_GE(sniffer->sniff(noise).size(), 4);
    EXPECT_TRUE(sniffer->sniff("").size() > 0);
}

} // namespace
} // namespace quillory
