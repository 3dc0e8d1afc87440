#include "foundation/PropertyListReader.h"

#include "foundation/BinaryPropertyListReader.h"
#include "foundation/OpenStepPropertyListReader.h"
#include "foundation/PropertyListText.h"
#include "foundation/XmlPropertyListReader.h"

#include <QFile>

namespace quillory {
namespace {

Result<StoredPropertyList> stored(Result<PropertyList> list, PropertyListForm form)
{
    if (!list)
        return list.failure();
    return StoredPropertyList{*std::move(list), form};
}

} // namespace

Result<StoredPropertyList> readPropertyList(const QByteArray& bytes)
{
    if (isBinaryPropertyList(bytes))
        return stored(readBinaryPropertyList(bytes), PropertyListForm::binary);
    const auto text = propertyListText(bytes);
    if (!text)
        return text.failure();
    if (isXmlPropertyList(*text))
        return stored(readXmlPropertyList(*text), PropertyListForm::xml);
    return stored(readOpenStepPropertyList(*text), PropertyListForm::openStep);
}

Result<StoredPropertyList> readPropertyListFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Failure{QStringLiteral("%1: %2").arg(path, file.errorString())};
    auto list = readPropertyList(file.readAll());
    if (list)
        return list;
    return Failure{QStringLiteral("%1: %2").arg(path, list.failure().description())};
}

} // namespace quillory
