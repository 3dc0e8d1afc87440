#include "text/ByteLayout.h"

namespace quillory {

namespace {

bool choosesByteOrderByMark(StringEncoding encoding)
{
    return encoding == StringEncoding::utf16 || encoding == StringEncoding::utf32;
}

} // namespace

bool hasChoiceOfLayout(StringEncoding encoding)
{
    return encoding == StringEncoding::utf8 || choosesByteOrderByMark(encoding);
}

ByteLayout standardLayout(StringEncoding encoding)
{
    return {.hasMark = choosesByteOrderByMark(encoding),
            .bigEndian = encoding == StringEncoding::utf16BigEndian ||
                         encoding == StringEncoding::utf32BigEndian};
}

ByteLayout layoutOf(QByteArrayView bytes, StringEncoding encoding)
{
    if (!hasChoiceOfLayout(encoding))
        return standardLayout(encoding);
    for (const bool bigEndian : {true, false}) {
        const ByteLayout marked{.hasMark = true, .bigEndian = bigEndian};
        if (bytes.startsWith(byteOrderMark(encoding, marked)))
            return {.hasMark = true, .bigEndian = bigEndian && choosesByteOrderByMark(encoding)};
    }
    return {.hasMark = false, .bigEndian = choosesByteOrderByMark(encoding)};
}

QByteArrayView byteOrderMark(StringEncoding encoding, ByteLayout layout)
{
    if (!layout.hasMark)
        return {};
    switch (encoding) {
    case StringEncoding::utf8:
        return {"\xEF\xBB\xBF", 3};
    case StringEncoding::utf16:
        return layout.bigEndian ? QByteArrayView("\xFE\xFF", 2) : QByteArrayView("\xFF\xFE", 2);
    case StringEncoding::utf32:
        return layout.bigEndian ? QByteArrayView("\0\0\xFE\xFF", 4)
                                : QByteArrayView("\xFF\xFE\0\0", 4);
    default:
        return {};
    }
}

} // namespace quillory
