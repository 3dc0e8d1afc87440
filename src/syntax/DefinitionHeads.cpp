#include "syntax/DefinitionHeads.h"

#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/PropertyListReader.h"
#include "syntax/DefinitionCopy.h"

#include <QFileInfo>
#include <QSaveFile>

namespace quillory {

DefinitionHeads::DefinitionHeads(QString file, const QString& folder)
    : m_file(std::move(file)), m_folder(folder)
{
    if (m_file.isEmpty())
        return;
    if (const Result<StoredPropertyList> stored = readPropertyListFile(m_file))
        m_read = stored->list.toDictionary();
}

std::optional<PropertyList> DefinitionHeads::head(const QFileInfo& definition)
{
    const PropertyList known = m_read.value(keyOf(definition));
    if (known[QStringLiteral("stamp")].toString() != stampOf(definition.filePath()))
        return std::nullopt;
    m_used.insert(keyOf(definition), known);
    return known[QStringLiteral("head")];
}

QString DefinitionHeads::keyOf(const QFileInfo& definition) const
{
    return m_folder.relativeFilePath(definition.filePath());
}

void DefinitionHeads::remember(const QFileInfo& definition, const PropertyList& head)
{
    m_used.insert(keyOf(definition), PropertyList::Dictionary{
                                         {QStringLiteral("stamp"), stampOf(definition.filePath())},
                                         {QStringLiteral("head"), head}});
}

QString DefinitionHeads::copyOf(const QFileInfo& definition) const
{
    if (m_file.isEmpty())
        return {};
    return QFileInfo(m_file).path() + QStringLiteral("/Definitions/") + keyOf(definition);
}

void DefinitionHeads::save() const
{
    if (m_file.isEmpty() || m_used == m_read)
        return;
    const Result<QByteArray> bytes = writeBinaryPropertyList(m_used);
    QDir().mkpath(QFileInfo(m_file).path());
    QSaveFile file(m_file);
    if (bytes && file.open(QIODevice::WriteOnly) && file.write(*bytes) == bytes->size())
        file.commit();
}

} // namespace quillory
