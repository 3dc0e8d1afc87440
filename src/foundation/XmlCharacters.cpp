#include "foundation/XmlCharacters.h"

namespace quillory {

qsizetype forbiddenInXml(QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (unit >= 0x20 && unit < 0xD800)
            continue;
        if (unit < 0x20) {
            if (unit != u'\t' && unit != u'\n' && unit != u'\r')
                return i;
        } else if (QChar::isHighSurrogate(unit)) {
            if (i + 1 == text.size() || !text[i + 1].isLowSurrogate())
                return i;
            ++i;
        } else if (QChar::isLowSurrogate(unit) || unit >= 0xFFFE) {
            return i;
        }
    }
    return -1;
}

} // namespace quillory
