#include "document/TextConversion.h"

#include "text/TextDecoder.h"
#include "text/TextEncoder.h"

namespace quillory {

std::optional<TextSnapshot> thereAndBack(const TextSnapshot& text, StringEncoding encoding)
{
    const std::optional<QByteArray> bytes = encoded(text, encoding);
    return bytes ? decode(ByteBuffer(*bytes), encoding) : std::nullopt;
}

} // namespace quillory
