#pragma once

#include "document/FileOps.h"

#include <QMap>
#include <QVector>
#include <functional>
#include <memory>

namespace quillory {

/// A file system in memory that knows which of its bytes and names have reached the device, and
/// what else may be there when the power goes.
///
/// Of a file whose bytes were not synced, the device may hold the old ones, the new ones, a mix, or
/// zeroes where the new ones belong. A name that was made, moved or removed since its folder was
/// synced may be there in either state, each independently of the others: less than what file
/// systems with a journal promise, and all that POSIX does.
class PowerCutFileOps : public FileOps
{
public:
    /// Without them, files have a name from the start, as on some file systems.
    explicit PowerCutFileOps(bool hasUnnamedFiles = true);

    /// Makes a file, its bytes and its name on the device; so are its folders.
    void makeFile(const QByteArray& path, const QByteArray& bytes);
    /// Gives a file a second name.
    void makeHardLink(const QByteArray& from, const QByteArray& to);

    bool exists(const QByteArray& path) const { return m_names.contains(path); }
    QByteArray content(const QByteArray& path) const;

    /// Called before each call that changes something.
    void setBeforeChange(std::function<void()> call) { m_beforeChange = std::move(call); }

    /// Calls \a visit with each file system that may be found after a power cut now.
    void forEachStateAfterPowerCut(const std::function<void(PowerCutFileOps&)>& visit) const;

protected:
    FileResult<int> tryOpen(const QByteArray& path, int flags, mode_t mode) override;
    FileStatus tryClose(int descriptor) override;
    FileResult<qint64> tryRead(int descriptor, char* target, qint64 size, qint64 offset) override;
    FileResult<qint64> tryWrite(int descriptor, const char* bytes, qint64 size,
                                qint64 offset) override;
    FileStatus trySync(int descriptor) override;
    FileStatus tryAllocate(int descriptor, qint64 size) override;
    FileStatus tryTruncate(int descriptor, qint64 size) override;
    FileResult<struct stat> tryStatus(int descriptor) override;
    FileResult<struct stat> tryLinkStatus(const QByteArray& path) override;
    FileResult<QByteArray> tryReadLink(const QByteArray& path) override;
    FileStatus tryLock(int descriptor) override;
    FileStatus tryChangeMode(int descriptor, mode_t mode) override;
    FileStatus tryChangeOwner(int descriptor, uid_t owner, gid_t group) override;
    FileResult<QByteArrayList> tryAttributeNames(int descriptor) override;
    FileResult<QByteArray> tryAttribute(int descriptor, const QByteArray& name) override;
    FileStatus trySetAttribute(int descriptor, const QByteArray& name,
                               const QByteArray& value) override;
    FileStatus tryRemoveAttribute(int descriptor, const QByteArray& name) override;
    FileStatus tryLink(int descriptor, const QByteArray& path) override;
    FileStatus tryRename(const QByteArray& from, const QByteArray& to,
                         Replacing replacing) override;
    FileStatus tryRemove(const QByteArray& path) override;
    FileStatus tryMakeFolder(const QByteArray& path, mode_t mode) override;
    FileStatus tryRemoveFolder(const QByteArray& path) override;
    FileResult<QByteArrayList> tryNames(const QByteArray& folder) override;
    FileStatus tryMayWrite(const QByteArray& path) override;

private:
    struct Node
    {
        int number = 0;
        mode_t mode = 0;
        QByteArray bytes;
        QByteArray synced; ///< what is on the device for certain
    };
    using NodePointer = std::shared_ptr<Node>;
    using Names = QMap<QByteArray, NodePointer>;

    /// A change of names that is not on the device for certain: \a removed goes, where it is not
    /// empty, and \a added leads to \a node.
    struct Change
    {
        QByteArray removed;
        QByteArray added;
        NodePointer node;
        void applyTo(Names& names) const;
        QByteArray folder() const;
    };

    NodePointer makeNode(mode_t mode);
    void change(const Change& change);
    void announceChange() const;
    struct stat statusOf(const Node& node) const;

    bool m_hasUnnamedFiles;
    int m_nextNumber = 1;
    int m_nextDescriptor = 3;
    Names m_names; ///< as the process sees them
    Names m_namesOnDevice;
    QVector<Change> m_pending; ///< in order
    QMap<int, NodePointer> m_open;
    QMap<int, QByteArray> m_openFolders;
    std::function<void()> m_beforeChange;
};

} // namespace quillory
