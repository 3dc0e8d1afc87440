#include "syntax/DefinitionHeads.h"

#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/PropertyListReader.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace quillory {

namespace {

/// Another one for every state of the file. Some programs keep the time of the last change when
/// they write a file; none can keep the time of the change to its metadata.
QString stampOf(const QFileInfo& file)
{
    const auto milliseconds = [&](QFileDevice::FileTime time) {
        return QString::number(file.fileTime(time).toMSecsSinceEpoch());
    };
    return QString::number(file.size()) + u'/' + milliseconds(QFile::FileModificationTime) + u'/' +
           milliseconds(QFile::FileMetadataChangeTime);
}

} // namespace

DefinitionHeads::DefinitionHeads(QString file) : m_file(std::move(file))
{
    if (m_file.isEmpty())
        return;
    if (const Result<StoredPropertyList> stored = readPropertyListFile(m_file))
        m_read = stored->list.toDictionary();
}

std::optional<PropertyList> DefinitionHeads::head(const QFileInfo& definition)
{
    const PropertyList known = m_read.value(definition.filePath());
    if (known[QStringLiteral("stamp")].toString() != stampOf(definition))
        return std::nullopt;
    m_used.insert(definition.filePath(), known);
    return known[QStringLiteral("head")];
}

void DefinitionHeads::remember(const QFileInfo& definition, const PropertyList& head)
{
    m_used.insert(definition.filePath(),
                  PropertyList::Dictionary{{QStringLiteral("stamp"), stampOf(definition)},
                                           {QStringLiteral("head"), head}});
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
