#include "document/DocumentType.h"

#include <QFile>
#include <QFileInfo>

namespace quillory::DocumentType {

namespace {

constexpr QLatin1StringView binaryMagic("bplist");
/// A key of every keyed archive's outermost dictionary, whose keys writers put first or last.
constexpr QLatin1StringView archiverKey("$archiver");
constexpr qint64 searched = 65536; ///< bytes at either end

bool holdsArchive(QFile& file)
{
    if (file.read(searched).contains(QByteArrayView(archiverKey)))
        return true;
    file.seek(std::max<qint64>(0, file.size() - searched));
    return file.read(searched).contains(QByteArrayView(archiverKey));
}

} // namespace

QString ofFile(const QString& path)
{
    QString byName = ofNewFile(path);
    if (byName == archive || !QFileInfo(path).isFile())
        return byName;
    QFile file(path);
    if (file.open(QFile::ReadOnly) && file.peek(binaryMagic.size()) == QByteArrayView(binaryMagic))
        return holdsArchive(file) ? archive : propertyList;
    return byName;
}

QString ofNewFile(const QString& path)
{
    const QString extension = QFileInfo(path).suffix().toLower();
    if (extension == archiveExtension)
        return archive;
    return extension == QLatin1StringView("plist") ? propertyList : text;
}

} // namespace quillory::DocumentType
