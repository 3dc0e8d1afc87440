#include "view/SnapshotMimeData.h"

#include <QStringList>

namespace quillory {

namespace {

QString plainText()
{
    return QStringLiteral("text/plain");
}

} // namespace

bool SnapshotMimeData::hasFormat(const QString& mimeType) const
{
    return mimeType == plainText();
}

QStringList SnapshotMimeData::formats() const
{
    return {plainText()};
}

QVariant SnapshotMimeData::retrieveData(const QString& mimeType, QMetaType) const
{
    return mimeType == plainText() ? m_text.string() : QVariant();
}

TextSnapshot SnapshotMimeData::textOf(const QMimeData& data)
{
    if (const auto* own = qobject_cast<const SnapshotMimeData*>(&data))
        return own->snapshot();
    return TextSnapshot(data.text());
}

} // namespace quillory
