#include "support/Folders.h"
#include "text/ByteTable.h"
#include "text/EncodingTable.h"
#include "text/TextDecoder.h"
#include "text/TextEncoder.h"

#include <QFile>
#include <QSet>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

std::optional<TextSnapshot> decoded(const QByteArray& bytes, StringEncoding encoding)
{
    return decode(ByteBuffer(bytes), encoding);
}

TEST(EncodingRoundTrip, ControlsAndPunctuationStayThemselves)
{
    for (const EncodingInfo& info : knownEncodings()) {
        SCOPED_TRACE(info.displayName);
        QString text;
        for (char16_t unit = 0; unit < 0x80; ++unit)
            text += QChar(unit);
        // Escape and shift characters have no place in a text that is encoded with them.
        if (info.form == EncodingForm::stateful) {
            for (const char16_t unit : {0x0E, 0x0F, 0x1B})
                text.remove(QChar(unit));
        }
        const TextSnapshot snapshot(text);
        const auto bytes = encoded(snapshot, info.encoding);
        ASSERT_TRUE(bytes);
        const auto back = decoded(*bytes, info.encoding);
        ASSERT_TRUE(back);
        EXPECT_EQ(back->string(), text);
        if (info.form == EncodingForm::byteTable || info.form == EncodingForm::multiByte) {
            EXPECT_EQ(*bytes, text.toLatin1());
        }
    }
}

TEST(EncodingRoundTrip, EveryByteOfATableIsACharacterOrRefused)
{
    for (const EncodingInfo& info : knownEncodings()) {
        SCOPED_TRACE(info.displayName);
        if (info.form != EncodingForm::byteTable)
            continue;
        const ByteTable& table = ByteTable::of(info);
        QSet<char16_t> characters;
        for (int byte = 0; byte < 256; ++byte) {
            const QByteArray bytes(1, char(byte));
            const auto text = decoded(bytes, info.encoding);
            ASSERT_EQ(text.has_value(), table.unitFor(uchar(byte)) != ByteTable::undefined);
            if (!text)
                continue;
            ASSERT_EQ(text->length(), 1);
            characters.insert(text->at(0));
            EXPECT_EQ(encoded(*text, info.encoding), bytes);
        }
        for (char32_t unit = 0; unit <= 0xFFFF; ++unit)
            EXPECT_EQ(table.byteFor(char16_t(unit)) >= 0, characters.contains(char16_t(unit)))
                << quint32(unit);
    }
}

TEST(EncodingRoundTrip, TextOfManyLeavesComesBack)
{
    for (const EncodingInfo& info : knownEncodings()) {
        SCOPED_TRACE(info.displayName);
        // The characters that fit among samples from all over Unicode, in a text that has short and
        // long stretches of ASCII.
        QString candidates;
        for (char32_t character = 0x80; character < 0x30000;
             character += character < 0x10000 ? 37 : 997) {
            const QString one = QStringView(QChar::fromUcs4(character)).toString();
            if (!QChar::isSurrogate(character) &&
                !findUnencodable(TextSnapshot(one), info.encoding))
                candidates += one;
        }
        std::mt19937 random(11);
        QString text;
        while (text.size() < 60000) {
            const qsizetype some = candidates.isEmpty() ? 0 : qsizetype(random() % 40);
            for (qsizetype i = 0; i < some; ++i) {
                const qsizetype at = qsizetype(random() % size_t(candidates.size()));
                if (!candidates[at].isSurrogate())
                    text += candidates[at];
                else if (candidates[at].isHighSurrogate())
                    text += candidates.sliced(at, 2);
            }
            text += QString(qsizetype(random() % 10 == 0 ? random() % 6000 : random() % 90), u'x') +
                    u'\n';
        }
        const TextSnapshot snapshot(text);
        const auto bytes = encoded(snapshot, info.encoding);
        ASSERT_TRUE(bytes);
        const auto back = decoded(*bytes, info.encoding);
        ASSERT_TRUE(back);
        EXPECT_TRUE(back->string() == text);
        EXPECT_TRUE(encodesBack(*back, info.encoding, layoutOf(*bytes, info.encoding), *bytes));
        EXPECT_EQ(encodedSize(snapshot, info.encoding, standardLayout(info.encoding)),
                  ByteCount(bytes->size()));
    }
}

TEST(EncodingRoundTrip, FirstCharacterThatDoesNotFitIsNamed)
{
    for (const EncodingInfo& info : knownEncodings()) {
        SCOPED_TRACE(info.displayName);
        const bool hasAll =
            info.form != EncodingForm::byteTable && info.form != EncodingForm::multiByte;
        if (hasAll && info.form != EncodingForm::stateful)
            continue;
        if (info.encoding == StringEncoding::utf7 || info.encoding == StringEncoding(0x80000632))
            continue;
        for (const TextOffset before : {0, 1, 4095, 4096, 9000}) {
            QString text(before, u'x');
            text += u"\U0001F600 and \u0E81 more";
            const auto failure = findUnencodable(TextSnapshot(text), info.encoding);
            const EncodingFailure expected{EncodingFailure::Cause::unencodableCharacter, before,
                                           U'\U0001F600'};
            EXPECT_EQ(failure, expected) << before;
            EXPECT_FALSE(encoded(TextSnapshot(text), info.encoding));
        }
    }
}

TEST(EncodingRoundTrip, CharactersIgnoredInDisplayAreNotDropped)
{
    for (const EncodingInfo& info : knownEncodings()) {
        SCOPED_TRACE(info.displayName);
        for (const char16_t unit :
             {u'\u00AD', u'\u034F', u'\u200B', u'\u200D', u'\uFE0F', u'\uFEFF'}) {
            const QString text = u"a" % QString(QChar(unit)) % u"b";
            const auto bytes = encoded(TextSnapshot(text), info.encoding);
            if (bytes) {
                EXPECT_EQ(decoded(*bytes, info.encoding)->string(), text) << int(unit);
            }
        }
    }
}

TEST(EncodingRoundTrip, RandomBytesAreReadBackOrRefused)
{
    for (const EncodingInfo& info : knownEncodings()) {
        SCOPED_TRACE(info.displayName);
        std::mt19937 random(23);
        int accepted = 0;
        for (int round = 0; round < 800; ++round) {
            QByteArray bytes(qsizetype(random() % 12), Qt::Uninitialized);
            for (char& byte : bytes)
                byte = char(random() % 3 == 0 ? random() % 0x80 : random());
            const auto text = decoded(bytes, info.encoding);
            if (!text)
                continue;
            ++accepted;
            const ByteLayout layout = layoutOf(bytes, info.encoding);
            QByteArray again;
            const auto failure = encode(*text, info.encoding, layout, [&](QByteArrayView piece) {
                again.append(piece);
                return true;
            });
            // Not every sequence that can be read can be written, but what is written says the
            // same.
            EXPECT_EQ(encodesBack(*text, info.encoding, layout, bytes), !failure && again == bytes)
                << bytes.toHex().constData();
            if (!failure) {
                EXPECT_EQ(decoded(again, info.encoding)->string(), text->string())
                    << bytes.toHex().constData();
            }
        }
        EXPECT_GT(accepted, 10);
    }
}

TEST(EncodingList, HoldsEveryEncodingThatIsKnown)
{
    QFile file(QStringLiteral(QUILLORY_SOURCE_DIR "/resources/Encodings.plist"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QList<quint32> numbers;
    QStringList names;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"string")
            names += xml.readElementText();
        else if (xml.name() == u"integer")
            numbers += xml.readElementText().toUInt();
    }
    ASSERT_FALSE(xml.hasError()) << qPrintable(xml.errorString());
    ASSERT_EQ(numbers.size(), names.size());
    EXPECT_EQ(numbers.size(), qsizetype(knownEncodings().size()));
    EXPECT_EQ(QSet<quint32>(numbers.begin(), numbers.end()).size(), numbers.size());
    for (qsizetype i = 0; i < numbers.size(); ++i)
        EXPECT_EQ(displayName(StringEncoding(numbers[i])), names[i]);
}

} // namespace
} // namespace quillory
