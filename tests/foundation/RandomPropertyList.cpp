#include "RandomPropertyList.h"

#include <bit>
#include <cmath>
#include <limits>

namespace quillory {

QString RandomPropertyList::text(bool xml)
{
    constexpr QStringView harmless = u"ab &<>\"']\n\r\té\u0085\u2028日\uFEFF";
    QString text;
    for (int length = below(20) == 0 ? 300 : below(12); length > 0; --length) {
        if (below(8) == 0)
            text += QStringView(u"\U0001F600");
        else if (!xml && below(8) == 0)
            text += QChar(char16_t(below(0x10000)));
        else
            text += harmless[below(int(harmless.size()))];
    }
    return text;
}

PropertyList RandomPropertyList::leaf(bool xml)
{
    const auto bits = quint64(m_random()) << 32 | m_random();
    switch (below(8)) {
    case 0:
        return below(2) == 0;
    case 1:
        return qint64(bits) >> below(64);
    case 2:
        return bits >> below(64);
    case 3: {
        const auto real = std::bit_cast<double>(bits);
        return below(4) == 0 ? double(below(1000)) / 8 : real;
    }
    case 4: {
        const auto seconds = double(qint64(bits) >> 32) * 10;
        return PropertyList::Date{xml ? seconds : seconds + 0.5};
    }
    case 5:
        return PropertyList::Uid{quint32(bits >> below(32))};
    case 6:
        return QByteArray(below(100), char(bits));
    default:
        return text(xml);
    }
}

PropertyList RandomPropertyList::list(int depth, bool xml)
{
    if (depth == 0 || below(3) == 0)
        return leaf(xml);
    const int count = below(30) == 0 ? 20 : below(5);
    if (below(2) == 0) {
        PropertyList::Array array;
        for (int i = 0; i < count; ++i)
            array.append(list(depth - 1, xml));
        return array;
    }
    PropertyList::Dictionary dictionary;
    for (int i = 0; i < count; ++i)
        dictionary.insert(text(xml), list(depth - 1, xml));
    return dictionary;
}

} // namespace quillory
