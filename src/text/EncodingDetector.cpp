#include "text/EncodingDetector.h"

#include "text/ByteEvidence.h"
#include "text/EncodingNames.h"
#include "text/EncodingTable.h"
#include "text/TextDecoder.h"

namespace quillory {

namespace {

bool tryEncoding(StringEncoding encoding, const ByteBuffer& bytes, DetectedText& result)
{
    auto text = encoding != StringEncoding::none ? decode(bytes, encoding) : std::nullopt;
    if (!text)
        return false;
    result = {encoding, layoutOf(bytes.view(), encoding), std::move(*text)};
    return true;
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
    const EncodingInfo* info = encodingInfo(encoding);
    const bool isWide =
        info && (info->form == EncodingForm::utf16 || info->form == EncodingForm::utf32);
    return isWide ? StringEncoding::none : encoding;
}

} // namespace

DetectedText detectEncoding(const ByteBuffer& bytes, QByteArrayView textEncodingAttribute)
{
    const QByteArrayView view = bytes.view();
    DetectedText result;
    const auto isIt = [&](StringEncoding encoding) { return tryEncoding(encoding, bytes, result); };

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
        if (isIt(plausible(encoding)))
            return result;
    }
    if (!isIt(StringEncoding::windowsLatin1))
        isIt(StringEncoding::isoLatin1);
    return result;
}

} // namespace quillory
