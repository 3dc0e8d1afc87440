#include "document/SaveScenario.h"

#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr uid_t nobody = 65534;
constexpr uid_t otherUser = 4321;

QByteArray filePath(const QString& folder)
{
    return QFile::encodeName(folder + QStringLiteral("/file.txt"));
}

bool makeFile(const QString& folder, mode_t mode = 0644)
{
    writeFile(folder + QStringLiteral("/file.txt"), oldContent());
    return chmod(filePath(folder).constData(), mode) == 0;
}

bool setAttribute(const QString& folder, const char* name, const QByteArray& value)
{
    return setxattr(filePath(folder).constData(), name, value.constData(), size_t(value.size()),
                    0) == 0;
}

/// An access list as the kernel stores it (linux/posix_acl_xattr.h): user rw, user 4321 r, group
/// none, mask r, other none.
QByteArray accessList()
{
    return QByteArray::fromHex("02000000"
                               "01000600ffffffff"
                               "02000400e1100000"
                               "04000000ffffffff"
                               "10000400ffffffff"
                               "20000000ffffffff");
}

/// Names of the folder and of those within it, sorted.
QStringList pathsIn(const QString& folder)
{
    QStringList paths;
    const QDir dir(folder);
    const auto filter = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    for (const QFileInfo& info : dir.entryInfoList(filter, QDir::Name)) {
        paths.append(info.filePath());
        if (info.isDir() && !info.isSymLink())
            paths += pathsIn(info.filePath());
    }
    return paths;
}

QByteArray attributesOf(const QByteArray& path)
{
    char names[4096];
    const ssize_t size = llistxattr(path.constData(), names, sizeof names);
    if (size <= 0)
        return {};
    QByteArrayList result;
    QByteArrayList list = QByteArray(names, size).split('\0');
    list.removeLast();
    for (const QByteArray& name : list) {
        char value[4096];
        const ssize_t count = lgetxattr(path.constData(), name.constData(), value, sizeof value);
        result.append(name + '=' + QByteArray(value, std::max<ssize_t>(count, 0)).toHex());
    }
    std::sort(result.begin(), result.end());
    return result.join(' ');
}

} // namespace

ByteSource sourceOf(const QByteArray& bytes)
{
    return [bytes](const ByteSink& sink) {
        constexpr qsizetype pieceSize = 1000;
        for (qsizetype at = 0; at < bytes.size(); at += pieceSize) {
            if (!sink(QByteArrayView(bytes).sliced(at, std::min(pieceSize, bytes.size() - at))))
                return false;
        }
        return true;
    };
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(no file)");
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

Unprivileged::Unprivileged() : m_wasRoot(geteuid() == 0)
{
    if (m_wasRoot && (setgroups(0, nullptr) != 0 || setegid(nobody) != 0 || seteuid(nobody) != 0))
        qFatal("cannot give up root's rights");
}

Unprivileged::~Unprivileged()
{
    if (m_wasRoot && (seteuid(0) != 0 || setegid(0) != 0))
        qFatal("cannot take root's rights again");
}

std::ostream& operator<<(std::ostream& stream, const SaveScenario& scenario)
{
    return stream << scenario.name;
}

QByteArray oldContent()
{
    return QByteArray(1800, 'o') + "\nold\n";
}

const QVector<SaveScenario>& saveScenarios()
{
    using By = SaveScenario::By;
    static const QVector<SaveScenario> scenarios{
        {"newFile", By::User, [](const QString&) { return true; }},
        {"plain", By::User, [](const QString& folder) { return makeFile(folder); }},
        {"mode0640", By::User, [](const QString& folder) { return makeFile(folder, 0640); }},
        {"mode0444", By::User, [](const QString& folder) { return makeFile(folder, 0444); }},
        {"setUserId", By::User, [](const QString& folder) { return makeFile(folder, 04755); }},
        {"symbolicLinks", By::User,
         [](const QString& folder) {
             QDir(folder).mkdir(QStringLiteral("sub"));
             const QString real = folder + QStringLiteral("/sub/real.txt");
             writeFile(real, oldContent());
             return QFile::link(QStringLiteral("real.txt"),
                                folder + QStringLiteral("/sub/middle")) &&
                    QFile::link(folder + QStringLiteral("/sub/middle"),
                                folder + QStringLiteral("/file.txt"));
         }},
        {"hardLink", By::User,
         [](const QString& folder) {
             return makeFile(folder) &&
                    link(filePath(folder).constData(),
                         QFile::encodeName(folder + QStringLiteral("/other")).constData()) == 0;
         },
         true},
        {"hardLinkWriteProtected", By::User,
         [](const QString& folder) {
             return makeFile(folder, 0444) &&
                    link(filePath(folder).constData(),
                         QFile::encodeName(folder + QStringLiteral("/other")).constData()) == 0;
         },
         true},
        {"readOnlyFolder", By::User,
         [](const QString& folder) {
             return makeFile(folder) && chmod(QFile::encodeName(folder).constData(), 0555) == 0;
         },
         true},
        {"foreignOwner", By::UserAfterRoot,
         [](const QString& folder) {
             return makeFile(folder, 0666) &&
                    chown(filePath(folder).constData(), otherUser, otherUser) == 0;
         },
         true},
        {"foreignOwnerByRoot", By::Root,
         [](const QString& folder) {
             return makeFile(folder) &&
                    chown(filePath(folder).constData(), otherUser, otherUser) == 0 &&
                    chmod(filePath(folder).constData(), 06750) == 0;
         }},
        {"attributes", By::User,
         [](const QString& folder) {
             return makeFile(folder) && setAttribute(folder, "user.author", "someone") &&
                    setAttribute(folder, "user.empty", "");
         }},
        {"accessList", By::User,
         [](const QString& folder) {
             return makeFile(folder) &&
                    setAttribute(folder, "system.posix_acl_access", accessList());
         }},
        {"folderWithDefaultAccessList", By::User,
         [](const QString& folder) {
             return makeFile(folder) &&
                    setxattr(QFile::encodeName(folder).constData(), "system.posix_acl_default",
                             accessList().constData(), size_t(accessList().size()), 0) == 0;
         }},
        {"sparse", By::User,
         [](const QString& folder) {
             return makeFile(folder) && truncate(filePath(folder).constData(), off_t(1) << 20) == 0;
         }},
    };
    return scenarios;
}

QByteArray factsOf(const QString& folder)
{
    QByteArray facts;
    for (const QString& path : pathsIn(folder)) {
        const QByteArray encoded = QFile::encodeName(path);
        struct stat status = {};
        if (lstat(encoded.constData(), &status) != 0)
            continue;
        const auto number = [](auto value, int base = 10) -> QByteArray {
            return ' ' + QByteArray::number(qulonglong(value), base);
        };
        facts += encoded.mid(folder.size()) + number(status.st_mode, 8) + number(status.st_uid) +
                 number(status.st_gid) + number(status.st_nlink) + ' ' + attributesOf(encoded);
        if (S_ISLNK(status.st_mode))
            facts += " -> " + QFile::encodeName(QFile::symLinkTarget(path));
        facts += '\n';
    }
    return facts;
}

} // namespace quillory
