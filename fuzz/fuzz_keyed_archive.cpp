// Whatever is read from an archive can be archived again and reads back as the same dictionary.

#include "foundation/KeyedArchive.h"

#include <cstdlib>

using namespace quillory;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const auto read = decodeKeyedArchive(bytes);
    if (!read)
        return 0;
    const auto written = encodeKeyedArchive(*read);
    if (!written)
        std::abort();
    const auto again = decodeKeyedArchive(*written);
    if (!again || PropertyList(*again) != PropertyList(*read))
        std::abort();
    return 0;
}
