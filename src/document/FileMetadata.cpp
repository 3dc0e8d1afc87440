#include "document/FileMetadata.h"

namespace quillory {

namespace {

constexpr mode_t permissionBits = 07777;

bool vouchesForBytes(const QByteArray& attribute)
{
    return attribute == "security.capability" || attribute == "security.ima" ||
           attribute == "security.evm";
}

FileResult<QMap<QByteArray, QByteArray>> attributesOf(FileOps& ops, int descriptor)
{
    using Answer = FileResult<QMap<QByteArray, QByteArray>>;
    QMap<QByteArray, QByteArray> attributes;
    const FileResult<QByteArrayList> names = ops.attributeNames(descriptor);
    if (!names)
        return names.error() == ENOTSUP ? Answer(attributes) : Answer::failed(names.error());
    for (const QByteArray& name : *names) {
        if (vouchesForBytes(name))
            continue;
        const FileResult<QByteArray> value = ops.attribute(descriptor, name);
        if (value)
            attributes.insert(name, *value);
        else if (value.error() != ENODATA) // removed since it was listed
            return Answer::failed(value.error());
    }
    return attributes;
}

} // namespace

FileResult<FileMetadata> FileMetadata::of(FileOps& ops, int descriptor)
{
    const FileResult<struct stat> status = ops.status(descriptor);
    if (!status)
        return FileResult<FileMetadata>::failed(status.error());
    const auto attributes = attributesOf(ops, descriptor);
    if (!attributes)
        return FileResult<FileMetadata>::failed(attributes.error());
    return FileMetadata{status->st_uid, status->st_gid, status->st_mode & permissionBits,
                        *attributes};
}

// The owner goes first, since changing it clears the set-ID bits; the mode last, since an access
// list that the folder passed on, or that is set here, changes it.
FileStatus FileMetadata::applyTo(FileOps& ops, int descriptor) const
{
    const FileResult<FileMetadata> found = of(ops, descriptor);
    if (!found)
        return FileStatus::failed(found.error());
    if (*found == *this)
        return Nothing();

    FileStatus done = Nothing();
    if (found->owner != owner || found->group != group)
        done = ops.changeOwner(descriptor, owner, group);
    for (auto it = found->attributes.begin(); done && it != found->attributes.end(); ++it) {
        if (!attributes.contains(it.key()))
            done = ops.removeAttribute(descriptor, it.key());
    }
    for (auto it = attributes.begin(); done && it != attributes.end(); ++it) {
        if (!found->attributes.contains(it.key()) || found->attributes.value(it.key()) != *it)
            done = ops.setAttribute(descriptor, it.key(), *it);
    }
    if (done)
        done = ops.changeMode(descriptor, mode);
    if (!done)
        return done;

    const FileResult<FileMetadata> result = of(ops, descriptor);
    if (!result)
        return FileStatus::failed(result.error());
    return *result == *this ? FileStatus(Nothing()) : FileStatus::failed(EPERM);
}

} // namespace quillory
