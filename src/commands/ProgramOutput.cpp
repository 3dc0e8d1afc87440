#include "commands/ProgramOutput.h"

#include "text/TextBuilder.h"
#include "text/TextDecoder.h"
#include "text/Utf8.h"

#include <array>

namespace quillory {

namespace {

constexpr qsizetype pieceLength = 1 << 14; // code units
constexpr char16_t replacement = 0xfffd;

TextSnapshot decodedLeniently(QByteArrayView bytes)
{
    TextBuilder text;
    std::array<char16_t, pieceLength> units{};
    while (!bytes.isEmpty()) {
        const Utf8Progress done = decodeUtf8(bytes, units.data(), pieceLength, bytes.size() + 1);
        text.append(QStringView(units.data(), done.written));
        bytes = bytes.sliced(done.read);
        if (!done.valid && !bytes.isEmpty()) {
            text.append(QStringView(&replacement, 1));
            bytes = bytes.sliced(1);
        }
    }
    return text.finish();
}

} // namespace

TextSnapshot textOfOutput(const QByteArray& bytes, StringEncoding encoding)
{
    const ByteBuffer buffer(bytes);
    std::optional<TextSnapshot> text = decode(buffer, StringEncoding::utf8);
    if (!text && encoding != StringEncoding::none && encoding != StringEncoding::utf8)
        text = decode(buffer, encoding);
    return text ? *std::move(text) : decodedLeniently(bytes);
}

} // namespace quillory
