#include "text/EncodingDetector.h"

#include "text/ByteEvidence.h"
#include "text/EncodingNames.h"
#include "text/EncodingRanking.h"
#include "text/EncodingTable.h"
#include "text/TextDecoder.h"

namespace quillory {

namespace {

bool tryEncoding(StringEncoding encoding, const ByteBuffer& bytes, const KnownText& known,
                 DetectedText& result)
{
    if (encoding == StringEncoding::none)
        return false;
    auto text = encoding == known.encoding ? known.text : decode(bytes, encoding);
    if (!text)
        return false;
    result = {encoding, layoutOf(bytes.view(), encoding), std::move(*text)};
    return true;
}

bool isWide(StringEncoding encoding)
{
    const EncodingInfo* info = encodingInfo(encoding);
    return info && (info->form == EncodingForm::utf16 || info->form == EncodingForm::utf32);
}

/// A name found in, or guessed from, bytes that are neither UTF-8 nor UTF-16: wide forms are out of
/// the question, and of the two numbers for code page 932 and for GBK the usual one is meant.
StringEncoding plausible(StringEncoding encoding)
{
    switch (quint32(encoding)) {
    case 0x80000a01:
        return StringEncoding::shiftJis;
    case 0x80000421:
        return StringEncoding(0x80000631);
    default:
        break;
    }
    return isWide(encoding) ? StringEncoding::none : encoding;
}

/// What the bytes may be by how plausible they are as text; the likeliest first, and none that is
/// far less likely. None at all where the likeliest has faults: then nothing speaks for those that
/// have none.
std::vector<StringEncoding> likelyEncodings(QByteArrayView bytes)
{
    constexpr double farLess = 50; // in the logarithm
    std::vector<StringEncoding> candidates;
    for (const EncodingInfo& info : knownEncodings()) {
        if (plausible(info.encoding) == info.encoding)
            candidates.push_back(info.encoding);
    }
    EncodingRanking ranking(candidates);
    ranking.take(bytes);
    const std::vector<RankedEncoding> ranked = ranking.ranked();
    std::vector<StringEncoding> likely;
    for (const RankedEncoding& each : ranked) {
        if (each.errors > 0 || each.plausibility < ranked.front().plausibility - farLess)
            break;
        likely.push_back(each.encoding);
    }
    return likely;
}

} // namespace

DetectedText detectEncoding(const ByteBuffer& bytes, QByteArrayView textEncodingAttribute,
                            const KnownText& known)
{
    const QByteArrayView view = bytes.view();
    DetectedText result;
    const auto isIt = [&](StringEncoding encoding) {
        return tryEncoding(encoding, bytes, known, result);
    };

    const auto isMarked = [&](StringEncoding encoding) {
        return layoutOf(view, encoding).hasMark && isIt(encoding);
    };

    // The mark of little-endian UTF-32 begins as that of UTF-16 does.
    if (isIt(encodingForAttribute(textEncodingAttribute)) || isMarked(StringEncoding::utf32) ||
        isMarked(StringEncoding::utf16) || isMarked(StringEncoding::utf8) ||
        isIt(utf16WithZeroBytes(view)) || isIt(escapeEncoding(view)) ||
        isIt(StringEncoding::utf8) || isIt(utf16WithoutFault(view)))
        return result;
    if (lookLikeBinary(view))
        return result;
    if (isIt(plausible(declaredEncoding(view))))
        return result;
    for (const StringEncoding encoding : likelyEncodings(view)) {
        if (isIt(encoding))
            return result;
    }
    if (!isIt(StringEncoding::windowsLatin1))
        isIt(StringEncoding::isoLatin1);
    return result;
}

qsizetype uncutBeginning(QByteArrayView bytes, QByteArrayView textEncodingAttribute)
{
    const auto hasMark = [&](StringEncoding encoding) { return layoutOf(bytes, encoding).hasMark; };
    const qsizetype aligned = bytes.size() / 4 * 4;
    if (isWide(encodingForAttribute(textEncodingAttribute)) || hasMark(StringEncoding::utf32) ||
        hasMark(StringEncoding::utf16) ||
        utf16WithZeroBytes(bytes.first(aligned)) != StringEncoding::none)
        return aligned;
    const auto endOfLast = [&](auto isIt) -> qsizetype {
        for (qsizetype end = bytes.size() - 1; end > bytes.size() / 2; --end) {
            // A line break of UTF-16 has a zero byte, which may be the second.
            if (isIt(uchar(bytes[end - 1])))
                return end % 2 != 0 && bytes[end] == '\0' ? end + 1 : end;
        }
        return 0;
    };
    // No encoding has a line break inside a character, none that does without escape sequences has
    // a blank or one of the signs below the digits.
    if (const qsizetype end = endOfLast([](uchar byte) { return byte == '\n' || byte == '\r'; }))
        return end;
    if (const qsizetype end = endOfLast([](uchar byte) { return byte > 0 && byte < '0'; }))
        return end;
    return wholeCharacters(bytes, StringEncoding::utf8);
}

} // namespace quillory
