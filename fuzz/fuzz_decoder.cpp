// Decodes the input in an encoding that its first byte chooses. What was decoded, and can be
// encoded, must decode to the same text again; and detection must not contradict decoding.

#include "text/EncodingDetector.h"
#include "text/EncodingTable.h"
#include "text/TextDecoder.h"
#include "text/TextEncoder.h"
#include "text/TextReader.h"

#include <cstdlib>

using namespace quillory;

namespace {

void check(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const StringEncoding encoding = knownEncodings()[data[0] % knownEncodings().size()].encoding;
    const ByteBuffer bytes(
        QByteArray(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1)));

    const DetectedText detected = detectEncoding(bytes);
    if (detected.isText())
        check(decode(bytes, detected.encoding) == detected.text);

    const auto text = decode(bytes, encoding);
    if (!text)
        return 0;
    const ByteLayout layout = layoutOf(bytes.view(), encoding);
    QByteArray again;
    const auto failure = encode(*text, encoding, layout, [&](QByteArrayView piece) {
        again.append(piece);
        return true;
    });
    check(encodesBack(*text, encoding, layout, bytes.view()) ==
          (!failure && again == bytes.view()));
    if (failure)
        check(TextReader(*text).codePointAt(failure->offset) == failure->character);
    else
        check(decode(ByteBuffer(again), encoding) == *text);
    return 0;
}
