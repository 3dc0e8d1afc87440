#include "view/SnapshotMimeData.h"

#include "text/Utf8.h"

#include <QStringList>

namespace quillory {

namespace {

QString plainText()
{
    return QStringLiteral("text/plain");
}

QString htmlText()
{
    return QStringLiteral("text/html");
}

QByteArray utf8Of(const TextSnapshot& text)
{
    QByteArray bytes;
    bytes.reserve(text.length());
    QString widened;
    text.forEachPiece(text.range(), [&](const TextPiece& piece) {
        QStringView units;
        if (const auto* latin1 = std::get_if<QLatin1StringView>(&piece.units)) {
            if (asciiPrefixLength(QByteArrayView(latin1->data(), latin1->size())) ==
                latin1->size()) {
                bytes.append(latin1->data(), latin1->size());
                return;
            }
            widened = QString(*latin1);
            units = widened;
        } else {
            units = std::get<QStringView>(piece.units);
        }
        while (!units.isEmpty()) {
            const qsizetype size = bytes.size();
            bytes.resize(size + 3 * units.size());
            const Utf8Progress progress = encodeUtf8(units, bytes.data() + size);
            bytes.resize(size + progress.written);
            units = units.sliced(progress.read);
            if (!progress.valid) {
                bytes += "\xEF\xBF\xBD";
                units = units.sliced(1);
            }
        }
    });
    return bytes;
}

} // namespace

bool SnapshotMimeData::hasFormat(const QString& mimeType) const
{
    return formats().contains(mimeType);
}

QStringList SnapshotMimeData::formats() const
{
    QStringList result{utf8Text(), plainText()};
    if (!m_html.isEmpty() || text().length() <= longestHtml)
        result += htmlText();
    return result;
}

QVariant SnapshotMimeData::retrieveData(const QString& mimeType, QMetaType type) const
{
    if (!hasFormat(mimeType))
        return {};
    if (mimeType == htmlText())
        return html();
    if (mimeType == plainText() && type == QMetaType::fromType<QString>())
        return text().string();
    return utf8Of(text());
}

QString SnapshotMimeData::html() const
{
    if (!m_html.isEmpty())
        return QStringLiteral("<meta charset=\"utf-8\">") + m_html;
    return QStringLiteral("<meta charset=\"utf-8\"><pre style=\"font-family: '%1', monospace\">")
               .arg(m_fontFamily.toHtmlEscaped()) +
           text().string().toHtmlEscaped() + QStringLiteral("</pre>");
}

} // namespace quillory
