#include "document/CharsetProbe.h"

#include "text/EncodingNames.h"

#include <QString>
#include <cstring>

namespace quillory {

StringEncoding probedEncoding(QByteArrayView bytes)
{
    const QLatin1StringView text(bytes);
    QLatin1StringView name;
    if (text.size() > 9) {
        const qsizetype charset = text.indexOf(QLatin1StringView("charset="));
        const qsizetype declaration = text.indexOf(QLatin1StringView("encoding="));
        if (charset >= 0 && charset < text.size() - 8) {
            qsizetype start = charset + 8;
            if (text.at(start) == QLatin1Char('"'))
                ++start;
            qsizetype end = start;
            while (end < text.size() && !std::strchr("\"' />", text.at(end).toLatin1()))
                ++end;
            name = text.sliced(start, end - start);
        } else if (declaration >= 0 && declaration < text.size() - 9) {
            const qsizetype start = std::min(declaration + 10, text.size());
            const qsizetype end = text.indexOf(QLatin1StringView("?>"), start);
            if (end > start)
                name = text.sliced(start, end - 1 - start);
        }
    }
    if (!name.isEmpty())
        return encodingForIanaName(QString(name));
    if (bytes.size() <= 2)
        return StringEncoding::none;
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return StringEncoding::utf8;
    if (bytes.startsWith("\xFE\xFF") || bytes.startsWith("\xFF\xFE"))
        return StringEncoding::utf16;
    return StringEncoding::none;
}

} // namespace quillory
