#include "syntax/DefinitionCopy.h"

#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/PropertyListReader.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace quillory {

QString stampOf(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return {};
    return QString::number(file.size()) + u'/' +
           QString::number(file.lastModified().toMSecsSinceEpoch());
}

std::optional<PropertyList> readDefinitionCopy(const QString& copy, const QString& path)
{
    if (copy.isEmpty() || !QFileInfo::exists(copy))
        return std::nullopt;
    const Result<StoredPropertyList> stored = readPropertyListFile(copy);
    if (!stored || stored->list[QStringLiteral("stamp")].toString() != stampOf(path))
        return std::nullopt;
    return stored->list[QStringLiteral("definition")];
}

void writeDefinitionCopy(const QString& copy, const QString& stamp, const PropertyList& dictionary)
{
    if (copy.isEmpty())
        return;
    const Result<QByteArray> bytes = writeBinaryPropertyList(PropertyList::Dictionary{
        {QStringLiteral("stamp"), stamp}, {QStringLiteral("definition"), dictionary}});
    QDir().mkpath(QFileInfo(copy).path());
    QSaveFile file(copy);
    if (bytes && file.open(QIODevice::WriteOnly) && file.write(*bytes) == bytes->size())
        file.commit();
}

} // namespace quillory
