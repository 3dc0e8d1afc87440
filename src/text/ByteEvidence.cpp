#include "text/ByteEvidence.h"

#include "text/CharacterSet.h"
#include "text/EncodingNames.h"
#include "text/Utf8.h"

#include <QRegularExpression>
#include <QtEndian>

namespace quillory {

namespace {

constexpr qsizetype sampleBytes = qsizetype(64) << 10;

QByteArrayView beginning(QByteArrayView bytes, qsizetype most)
{
    return bytes.first(std::min(bytes.size(), most));
}

bool isTextControl(char32_t character)
{
    // Tab, LF, VT, FF, CR, and the escape of terminals.
    return (character >= 0x09 && character <= 0x0D) || character == 0x1B;
}

/// True when the units of \a bytes are characters such as text has.
bool isFaultlessUtf16(QByteArrayView bytes, bool bigEndian)
{
    const auto unitAt = [&](qsizetype i) {
        return bigEndian ? qFromBigEndian<char16_t>(bytes.data() + i)
                         : qFromLittleEndian<char16_t>(bytes.data() + i);
    };
    bool hasLatin = false;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2) {
        char32_t character = unitAt(i);
        if (QChar::isHighSurrogate(character) && i + 3 < bytes.size() &&
            QChar::isLowSurrogate(unitAt(i + 2))) {
            character = QChar::surrogateToUcs4(char16_t(character), unitAt(i + 2));
            i += 2;
        }
        const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
        // A surrogate cut off by the sample's end is no fault.
        const bool isCutOff = QChar::isHighSurrogate(character) && i + 2 >= bytes.size();
        if ((isControl && !isTextControl(character)) ||
            (QChar::isSurrogate(character) && !isCutOff) ||
            CharacterSet::illegal().contains(character) ||
            QChar::category(character) == QChar::Other_PrivateUse)
            return false;
        hasLatin |= character < 0x100;
    }
    return hasLatin;
}

StringEncoding utf16Number(bool bigEndian)
{
    return bigEndian ? StringEncoding::utf16BigEndian : StringEncoding::utf16LittleEndian;
}

/// True when tildes only come as HZ uses them (RFC 1843), and some of them enclose two-byte
/// characters.
bool hasHzShifts(QByteArrayView bytes)
{
    bool isShifted = false;
    bool hasShifted = false;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char byte = bytes[i];
        if (byte == '~') {
            const char next = i + 1 < bytes.size() ? bytes[i + 1] : '\0';
            const bool isValid =
                isShifted ? next == '}' : next == '{' || next == '~' || next == '\n';
            if (!isValid)
                return false;
            isShifted = !isShifted && next == '{';
            ++i;
        } else if (isShifted) {
            if (i + 1 == bytes.size() || byte < 0x21 || byte > 0x77 || bytes[i + 1] < 0x21)
                return false;
            hasShifted = true;
            ++i;
        }
    }
    return hasShifted && !isShifted;
}

} // namespace

StringEncoding utf16WithZeroBytes(QByteArrayView bytes)
{
    const QByteArrayView sample = beginning(bytes, sampleBytes);
    if (bytes.size() % 2 != 0 || bytes.size() < 4)
        return StringEncoding::none;
    std::array<qsizetype, 2> zeros{};
    for (qsizetype i = 0; i < sample.size(); ++i)
        zeros[size_t(i % 2)] += sample[i] == '\0';
    const bool bigEndian = zeros[0] > zeros[1];
    const bool isCertain = std::min(zeros[0], zeros[1]) == 0 &&
                           std::max(zeros[0], zeros[1]) * 6 >= sample.size() &&
                           isFaultlessUtf16(sample, bigEndian);
    return isCertain ? utf16Number(bigEndian) : StringEncoding::none;
}

StringEncoding utf16WithoutFault(QByteArrayView bytes)
{
    const QByteArrayView sample = beginning(bytes, sampleBytes);
    if (bytes.size() % 2 != 0)
        return StringEncoding::none;
    const bool little = isFaultlessUtf16(sample, false);
    const bool big = isFaultlessUtf16(sample, true);
    return little != big ? utf16Number(big) : StringEncoding::none;
}

StringEncoding escapeEncoding(QByteArrayView bytes)
{
    const QByteArrayView sample = beginning(bytes, sampleBytes);
    if (asciiPrefixLength(sample) < sample.size())
        return StringEncoding::none;
    if (sample.contains("\x1B$)C"))
        return StringEncoding::iso2022Kr;
    if ((sample.contains("\x1B$B") || sample.contains("\x1B$@")) &&
        (sample.contains("\x1B(B") || sample.contains("\x1B(J")))
        return StringEncoding::iso2022Jp;
    return bytes.size() <= sampleBytes && hasHzShifts(bytes) ? StringEncoding::hz
                                                             : StringEncoding::none;
}

bool lookLikeBinary(QByteArrayView bytes)
{
    const QByteArrayView sample = beginning(bytes, sampleBytes);
    qsizetype controls = 0;
    for (const char byte : sample) {
        if (byte == '\0')
            return true;
        controls += (uchar(byte) < 0x20 && !isTextControl(uchar(byte))) || byte == 0x7F;
    }
    return controls * 50 > sample.size();
}

StringEncoding declaredEncoding(QByteArrayView bytes)
{
    // <?xml encoding="..."?>, <meta charset=...>, and -*- coding: ... -*- with its relatives.
    static const QRegularExpression declaration(
        QStringLiteral(R"((?:charset|coding)\s*[:=]\s*["']?([-\w.:]+))"),
        QRegularExpression::CaseInsensitiveOption);
    const QString start = QString::fromLatin1(beginning(bytes, 1024));
    return encodingForIanaName(declaration.match(start).capturedView(1));
}

QByteArray sampleOf(QByteArrayView bytes)
{
    constexpr qsizetype stretches = 16;
    constexpr qsizetype stretchBytes = 256;
    if (bytes.size() <= stretches * stretchBytes)
        return bytes.toByteArray();
    QByteArray sample = beginning(bytes, stretchBytes).toByteArray();
    for (qsizetype at = stretchBytes; at < bytes.size();) {
        at += asciiPrefixLength(bytes.sliced(at));
        const qsizetype back = std::max<qsizetype>(0, at - stretchBytes / 2);
        const qsizetype lineStart = bytes.sliced(back, at - back).lastIndexOf('\n');
        sample += '\n';
        sample += beginning(bytes.sliced(lineStart < 0 ? at : back + lineStart + 1), stretchBytes);
        at += bytes.size() / stretches;
    }
    return sample;
}

} // namespace quillory
