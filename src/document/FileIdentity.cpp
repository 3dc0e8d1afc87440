#include "document/FileIdentity.h"

namespace quillory {

FileIdentity FileIdentity::of(const struct stat& status)
{
    FileIdentity identity;
    identity.device = status.st_dev;
    identity.inode = status.st_ino;
    identity.size = status.st_size;
    identity.modifiedNanos =
        qint64(status.st_mtim.tv_sec) * 1'000'000'000 + qint64(status.st_mtim.tv_nsec);
    return identity;
}

bool FileIdentity::matches(const struct stat& status) const
{
    const FileIdentity other = of(status);
    return device == other.device && inode == other.inode && size == other.size &&
           modifiedNanos == other.modifiedNanos;
}

} // namespace quillory
