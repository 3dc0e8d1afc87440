#include "document/VersionReading.h"

#include "document/DocumentType.h"

namespace quillory {

ReadResult readVersion(VersionStore& store, const FileVersion& version, const QString& type,
                       const std::atomic_bool* cancelled)
{
    QByteArray bytes;
    bytes.reserve(version.size);
    const bool isWhole = store.bytes(version)([&](QByteArrayView piece) {
        bytes.append(piece);
        return !cancelled || !*cancelled;
    });
    FileBytes file;
    file.error = isWhole ? 0 : EIO;
    file.bytes = ByteBuffer(bytes);
    ReadResult result = readDocument(version.path, type, file);
    if (result.answer && type == DocumentType::text && version.encoding != StringEncoding::none)
        decodeAs(result, version.encoding);
    return result;
}

} // namespace quillory
