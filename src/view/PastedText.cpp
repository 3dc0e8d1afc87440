#include "view/PastedText.h"

#include "text/LineBreaks.h"
#include "text/TextDecoder.h"
#include "view/SnapshotMimeData.h"

#include <QTextDocumentFragment>
#include <QUrl>

namespace quillory {

TextSnapshot PastedText::decoded() const
{
    std::optional<TextSnapshot> text;
    if (!utf8.isEmpty())
        text = decode(ByteBuffer(utf8), StringEncoding::utf8);
    if (!text)
        text = TextSnapshot(utf8.isEmpty() ? string : QString::fromUtf8(utf8));
    return converted(*text, LineBreakFormat::unixLf);
}

bool offersText(const QMimeData& data)
{
    return data.hasText() || data.hasHtml() || data.hasFormat(SnapshotMimeData::utf8Text());
}

PastedText pastedText(const QMimeData& data)
{
    PastedText result;
    if (data.hasFormat(SnapshotMimeData::utf8Text()))
        result.utf8 = data.data(SnapshotMimeData::utf8Text());
    if (result.utf8.isEmpty() && data.hasText())
        result.string = data.text();
    if (result.size() == 0 && data.hasHtml())
        result.string = QTextDocumentFragment::fromHtml(data.html()).toPlainText();
    return result;
}

TextSnapshot textOf(const QMimeData& data)
{
    if (const auto* own = qobject_cast<const SnapshotMimeData*>(&data))
        return own->text();
    return pastedText(data).decoded();
}

QStringList localFiles(const QMimeData& data)
{
    QStringList paths;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            paths += url.toLocalFile();
    }
    return paths;
}

} // namespace quillory
