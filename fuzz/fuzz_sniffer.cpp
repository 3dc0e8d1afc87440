// Ranks encodings for the input, whole and in pieces that its first byte tells the length of, which
// must never lose a candidate; and converts it from one encoding to another, twice alike.

#include "document/TECConverter.h"
#include "document/TECSniffer.h"

#include <cstdlib>

using namespace quillory;

namespace {

void check(bool holds)
{
    if (!holds)
        std::abort();
}

StringEncoding encodingOf(uint8_t byte)
{
    return knownEncodings()[byte % knownEncodings().size()].encoding;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 4)
        return 0;
    const qsizetype pieceBytes = 1 + data[0];
    const StringEncoding from = encodingOf(data[1]);
    const StringEncoding to = encodingOf(data[2]);
    const QByteArray bytes(reinterpret_cast<const char*>(data + 3), qsizetype(size - 3));

    static std::optional<TECSniffer> sniffer = TECSniffer::init();
    sniffer->clear();
    const qsizetype candidates = sniffer->sniff(bytes).size();
    check(candidates + 1 == qsizetype(knownEncodings().size()));
    sniffer->clear();
    for (qsizetype at = 0; at < bytes.size(); at += pieceBytes)
        check(sniffer->sniff(bytes.mid(at, pieceBytes)).size() == candidates);

    std::optional<TECConverter> converter = TECConverter::initWithEncoding(from, to);
    if (!converter)
        return 0;
    const QByteArray converted = converter->convert(bytes);
    check(converter->convert(bytes) == converted);
    return 0;
}
