#include "document/PowerCutFileOps.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr int mostPendingChanges = 8; ///< 2^8 states of the names

const QByteArray rootFolder("/.");

QByteArray folderOfPath(const QByteArray& path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash > 0 ? path.first(slash) : rootFolder;
}

template<class T>
FileResult<T> failed(int error)
{
    return FileResult<T>::failed(error);
}

FileStatus failure(int error)
{
    return FileStatus::failed(error);
}

/// What the device may hold of a file whose synced bytes are \a old and whose bytes are \a now.
QByteArrayList possibleBytes(const QByteArray& old, const QByteArray& now)
{
    if (old == now)
        return {now};
    QByteArrayList all{old, now};
    // The size came through, or part of the bytes, but not the rest. What was appended to does not
    // suffer: before the first byte that is another both are the same.
    const qsizetype same =
        std::mismatch(old.begin(), old.end(), now.begin(), now.end()).first - old.begin();
    const qsizetype half = same + (now.size() - same) / 2;
    all.append(now.first(half) + QByteArray(now.size() - half, '\0'));
    all.append(now.first(same) + QByteArray(now.size() - same, '\0'));
    all.append(now.first(half) + old.mid(half));
    all.append(old.first(std::min(half, old.size())) + now.mid(half));
    all.append(now.first(half));
    return all;
}

} // namespace

PowerCutFileOps::PowerCutFileOps(bool hasUnnamedFiles) : m_hasUnnamedFiles(hasUnnamedFiles)
{
    m_names.insert(rootFolder, makeNode(S_IFDIR | 0755));
    m_namesOnDevice = m_names;
}

void PowerCutFileOps::Change::applyTo(Names& names) const
{
    if (!removed.isEmpty())
        names.remove(removed);
    if (!added.isEmpty())
        names.insert(added, node);
}

QByteArray PowerCutFileOps::Change::folder() const
{
    return folderOfPath(added.isEmpty() ? removed : added);
}

PowerCutFileOps::NodePointer PowerCutFileOps::makeNode(mode_t mode)
{
    auto node = std::make_shared<Node>();
    node->number = m_nextNumber++;
    node->mode = mode;
    return node;
}

void PowerCutFileOps::change(const Change& change)
{
    change.applyTo(m_names);
    m_pending.append(change);
}

void PowerCutFileOps::announceChange() const
{
    if (m_beforeChange)
        m_beforeChange();
}

void PowerCutFileOps::makeFile(const QByteArray& path, const QByteArray& bytes)
{
    for (QByteArray folder = folderOfPath(path); !m_names.contains(folder);
         folder = folderOfPath(folder))
        m_names.insert(folder, makeNode(S_IFDIR | 0755));
    const NodePointer node = makeNode(S_IFREG | 0644);
    node->bytes = node->synced = bytes;
    m_names.insert(path, node);
    m_namesOnDevice = m_names;
}

void PowerCutFileOps::makeHardLink(const QByteArray& from, const QByteArray& to)
{
    m_names.insert(to, m_names.value(from));
    m_namesOnDevice = m_names;
}

QByteArray PowerCutFileOps::content(const QByteArray& path) const
{
    const NodePointer node = m_names.value(path);
    return node ? node->bytes : QByteArrayLiteral("(no file)");
}

void PowerCutFileOps::forEachStateAfterPowerCut(
    const std::function<void(PowerCutFileOps&)>& visit) const
{
    if (m_pending.size() > mostPendingChanges)
        qFatal("%d changes of names wait for a sync: too many to try", int(m_pending.size()));
    for (int subset = 0; subset < (1 << m_pending.size()); ++subset) {
        Names names = m_namesOnDevice;
        for (int i = 0; i < m_pending.size(); ++i) {
            if ((subset >> i & 1) != 0)
                m_pending[i].applyTo(names);
        }
        // The bytes of each file, independently: count through all choices.
        QMap<NodePointer, QByteArrayList> choices;
        for (const NodePointer& node : names)
            choices.insert(node, possibleBytes(node->synced, node->bytes));
        int states = 1;
        for (const QByteArrayList& choice : choices)
            states *= int(choice.size());
        for (int state = 0; state < states; ++state) {
            PowerCutFileOps found(m_hasUnnamedFiles);
            found.m_nextNumber = m_nextNumber;
            int rest = state;
            QMap<NodePointer, NodePointer> copies;
            for (auto it = choices.begin(); it != choices.end(); ++it) {
                auto copy = std::make_shared<Node>(*it.key());
                copy->bytes = copy->synced = it->at(rest % it->size());
                rest /= int(it->size());
                copies.insert(it.key(), copy);
            }
            for (auto it = names.begin(); it != names.end(); ++it)
                found.m_names.insert(it.key(), copies.value(*it));
            found.m_namesOnDevice = found.m_names;
            visit(found);
        }
    }
}

struct stat PowerCutFileOps::statusOf(const Node& node) const
{
    struct stat status = {};
    status.st_ino = ino_t(node.number);
    status.st_mode = node.mode;
    status.st_size = node.bytes.size();
    for (const NodePointer& other : m_names)
        status.st_nlink += other.get() == &node ? 1 : 0;
    return status;
}

FileResult<int> PowerCutFileOps::tryOpen(const QByteArray& path, int flags, mode_t mode)
{
    NodePointer node = m_names.value(path);
    const bool isFolder = node && S_ISDIR(node->mode);
    if ((flags & O_TMPFILE) == O_TMPFILE) {
        if (!isFolder)
            return failed<int>(ENOENT);
        if (!m_hasUnnamedFiles)
            return failed<int>(EOPNOTSUPP);
        node = makeNode(S_IFREG | mode);
    } else if (isFolder) {
        m_openFolders.insert(m_nextDescriptor, path);
    } else if ((flags & O_CREAT) != 0) {
        if (node)
            return failed<int>(EEXIST);
        if (!m_names.contains(folderOfPath(path)))
            return failed<int>(ENOENT);
        announceChange();
        node = makeNode(S_IFREG | mode);
        change({{}, path, node});
    } else if (!node) {
        return failed<int>(ENOENT);
    }
    m_open.insert(m_nextDescriptor, node);
    return m_nextDescriptor++;
}

FileStatus PowerCutFileOps::tryClose(int descriptor)
{
    m_openFolders.remove(descriptor);
    return m_open.remove(descriptor) > 0 ? FileStatus(Nothing()) : failure(EBADF);
}

FileResult<qint64> PowerCutFileOps::tryRead(int descriptor, char* target, qint64 size,
                                            qint64 offset)
{
    const QByteArray& bytes = m_open.value(descriptor)->bytes;
    const qint64 count = std::clamp<qint64>(bytes.size() - offset, 0, size);
    if (count > 0)
        std::memcpy(target, bytes.constData() + offset, size_t(count));
    return count;
}

FileResult<qint64> PowerCutFileOps::tryWrite(int descriptor, const char* bytes, qint64 size,
                                             qint64 offset)
{
    announceChange();
    QByteArray& content = m_open.value(descriptor)->bytes;
    if (content.size() < offset + size)
        content.append(QByteArray(offset + size - content.size(), '\0'));
    content.replace(offset, size, QByteArrayView(bytes, size).toByteArray());
    return size;
}

FileStatus PowerCutFileOps::trySync(int descriptor)
{
    announceChange();
    const auto folder = m_openFolders.constFind(descriptor);
    if (folder == m_openFolders.constEnd()) {
        const NodePointer node = m_open.value(descriptor);
        node->synced = node->bytes;
        return Nothing();
    }
    QVector<Change> others;
    for (const Change& pending : std::as_const(m_pending)) {
        if (pending.folder() == *folder)
            pending.applyTo(m_namesOnDevice);
        else
            others.append(pending);
    }
    m_pending = others;
    return Nothing();
}

FileStatus PowerCutFileOps::tryAllocate(int, qint64)
{
    return Nothing();
}

FileStatus PowerCutFileOps::tryTruncate(int descriptor, qint64 size)
{
    announceChange();
    m_open.value(descriptor)->bytes.resize(size);
    return Nothing();
}

FileResult<struct stat> PowerCutFileOps::tryStatus(int descriptor)
{
    return statusOf(*m_open.value(descriptor));
}

FileResult<struct stat> PowerCutFileOps::tryLinkStatus(const QByteArray& path)
{
    const QByteArray openFiles("/proc/self/fd/");
    const NodePointer node = path.startsWith(openFiles)
                                 ? m_open.value(path.mid(openFiles.size()).toInt())
                                 : m_names.value(path);
    return node ? FileResult<struct stat>(statusOf(*node)) : failed<struct stat>(ENOENT);
}

FileResult<QByteArray> PowerCutFileOps::tryReadLink(const QByteArray&)
{
    return failed<QByteArray>(EINVAL);
}

FileStatus PowerCutFileOps::tryLock(int)
{
    return Nothing();
}

FileStatus PowerCutFileOps::tryChangeMode(int descriptor, mode_t mode)
{
    const NodePointer node = m_open.value(descriptor);
    node->mode = (node->mode & S_IFMT) | mode;
    return Nothing();
}

FileStatus PowerCutFileOps::tryChangeOwner(int, uid_t, gid_t)
{
    return Nothing();
}

FileResult<QByteArrayList> PowerCutFileOps::tryAttributeNames(int)
{
    return failed<QByteArrayList>(ENOTSUP);
}

FileResult<QByteArray> PowerCutFileOps::tryAttribute(int, const QByteArray&)
{
    return failed<QByteArray>(ENOTSUP);
}

FileStatus PowerCutFileOps::trySetAttribute(int, const QByteArray&, const QByteArray&)
{
    return failure(ENOTSUP);
}

FileStatus PowerCutFileOps::tryRemoveAttribute(int, const QByteArray&)
{
    return failure(ENOTSUP);
}

FileStatus PowerCutFileOps::tryLink(int descriptor, const QByteArray& path)
{
    if (m_names.contains(path))
        return failure(EEXIST);
    announceChange();
    change({{}, path, m_open.value(descriptor)});
    return Nothing();
}

FileStatus PowerCutFileOps::tryRename(const QByteArray& from, const QByteArray& to,
                                      Replacing replacing)
{
    if (replacing == Replacing::No && m_names.contains(to))
        return failure(EEXIST);
    if (!m_names.contains(from))
        return failure(ENOENT);
    announceChange();
    change({from, to, m_names.value(from)});
    return Nothing();
}

FileStatus PowerCutFileOps::tryRemove(const QByteArray& path)
{
    if (!m_names.contains(path))
        return failure(ENOENT);
    announceChange();
    change({path, {}, nullptr});
    return Nothing();
}

FileStatus PowerCutFileOps::tryMakeFolder(const QByteArray& path, mode_t mode)
{
    if (m_names.contains(path))
        return failure(EEXIST);
    if (!m_names.contains(folderOfPath(path)))
        return failure(ENOENT);
    announceChange();
    change({{}, path, makeNode(S_IFDIR | mode)});
    return Nothing();
}

FileStatus PowerCutFileOps::tryRemoveFolder(const QByteArray& path)
{
    const auto held = names(path);
    if (!held || !held->isEmpty())
        return failure(held ? ENOTEMPTY : held.error());
    return tryRemove(path);
}

FileResult<QByteArrayList> PowerCutFileOps::tryNames(const QByteArray& folder)
{
    if (!m_names.contains(folder))
        return failed<QByteArrayList>(ENOENT);
    QByteArrayList names;
    for (auto it = m_names.begin(); it != m_names.end(); ++it) {
        if (folderOfPath(it.key()) == folder)
            names.append(it.key().mid(folder.size() + 1));
    }
    return names;
}

FileStatus PowerCutFileOps::tryMayWrite(const QByteArray&)
{
    return Nothing();
}

} // namespace quillory
