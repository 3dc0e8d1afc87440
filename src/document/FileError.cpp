#include "document/FileError.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

namespace quillory {

namespace {

/// What one errno means to someone who saves a file.
struct Explanation
{
    int code;
    const char* cause;
    const char* wayOut;
};

constexpr const char* elsewhere = QT_TRANSLATE_NOOP("FileError", "Save elsewhere.");
constexpr const char* askForRights = QT_TRANSLATE_NOOP(
    "FileError", "Change the permissions of the file or its folder, or save elsewhere.");
constexpr const char* again = QT_TRANSLATE_NOOP("FileError", "Try again, or save elsewhere.");

constexpr std::array explanations{
    Explanation{ENOSPC,
                QT_TRANSLATE_NOOP("FileError", "there is no space left on the device it lies on"),
                QT_TRANSLATE_NOOP("FileError", "Free some space, or save elsewhere.")},
    Explanation{EDQUOT,
                QT_TRANSLATE_NOOP("FileError", "your share of the device it lies on is used up"),
                QT_TRANSLATE_NOOP("FileError", "Remove files of yours there, or save elsewhere.")},
    Explanation{EFBIG, QT_TRANSLATE_NOOP("FileError", "it would be larger than the system allows"),
                elsewhere},
    Explanation{EACCES, QT_TRANSLATE_NOOP("FileError", "you have no permission to write it"),
                askForRights},
    Explanation{EPERM, QT_TRANSLATE_NOOP("FileError", "the system does not permit it"),
                askForRights},
    Explanation{EROFS,
                QT_TRANSLATE_NOOP("FileError", "the device it lies on can only be read from"),
                elsewhere},
    Explanation{EIO, QT_TRANSLATE_NOOP("FileError", "the device it lies on reported a fault"),
                QT_TRANSLATE_NOOP("FileError", "Save elsewhere, and look after the device.")},
    Explanation{ENOENT, QT_TRANSLATE_NOOP("FileError", "its folder does not exist"),
                QT_TRANSLATE_NOOP("FileError", "Make the folder again, or save elsewhere.")},
    Explanation{ENOTDIR, QT_TRANSLATE_NOOP("FileError", "part of its path is not a folder"),
                elsewhere},
    Explanation{EEXIST, QT_TRANSLATE_NOOP("FileError", "there is a file of this name already"),
                QT_TRANSLATE_NOOP("FileError", "Save under another name.")},
    Explanation{EISDIR, QT_TRANSLATE_NOOP("FileError", "a folder has this name"),
                QT_TRANSLATE_NOOP("FileError", "Save under another name.")},
    Explanation{ENXIO, QT_TRANSLATE_NOOP("FileError", "this name leads to a device, not a file"),
                QT_TRANSLATE_NOOP("FileError", "Save under another name.")},
    Explanation{ENAMETOOLONG, QT_TRANSLATE_NOOP("FileError", "its name is too long"),
                QT_TRANSLATE_NOOP("FileError", "Save under a shorter name.")},
    Explanation{ELOOP, QT_TRANSLATE_NOOP("FileError", "its symbolic links lead in a circle"),
                QT_TRANSLATE_NOOP("FileError", "Mend the links, or save elsewhere.")},
    Explanation{EBUSY, QT_TRANSLATE_NOOP("FileError", "another program is using it"), again},
    Explanation{ETXTBSY, QT_TRANSLATE_NOOP("FileError", "it is a program that is running"),
                QT_TRANSLATE_NOOP("FileError", "End the program, or save elsewhere.")},
    Explanation{ESTALE,
                QT_TRANSLATE_NOOP("FileError", "the server it lies on does not know it any more"),
                elsewhere},
    Explanation{EMFILE, QT_TRANSLATE_NOOP("FileError", "too many files are open"), again},
    Explanation{ENFILE, QT_TRANSLATE_NOOP("FileError", "too many files are open"), again},
    Explanation{ECANCELED, QT_TRANSLATE_NOOP("FileError", "the text could not be encoded"),
                QT_TRANSLATE_NOOP("FileError", "Choose another encoding.")},
};

QString tr(const char* text)
{
    return QCoreApplication::translate("FileError", text);
}

const Explanation* explanationOf(int code)
{
    const auto* found = std::find_if(explanations.begin(), explanations.end(),
                                     [code](const Explanation& e) { return e.code == code; });
    return found == explanations.end() ? nullptr : found;
}

} // namespace

QString FileError::cause() const
{
    if (step == FileStep::Verify && code == EIO)
        return tr("what was read back is not what was written");
    const Explanation* explanation = explanationOf(code);
    QString text = explanation ? tr(explanation->cause)
                               : QString::fromStdString(std::generic_category().message(code));
    if (step == FileStep::StoreRecovery)
        return tr("a copy must be kept in the recovery folder “%1” first, and for that %2")
            .arg(QFile::decodeName(this->path), text);
    return text;
}

QString FileError::message(const QString& target, DiskState disk, bool isKept,
                           const QString& recoveryFolder) const
{
    const Explanation* explanation = explanationOf(code);
    const QString wayOut = tr(explanation ? explanation->wayOut : again);
    const QString name = QFileInfo(target).fileName();
    QString text;
    switch (disk) {
    case DiskState::Unchanged:
        text = tr("“%1” was not saved: %2. Nothing was changed on disk.").arg(name, cause());
        break;
    case DiskState::New:
        return {};
    case DiskState::Unconfirmed:
        text = tr("“%1” was written, but it is not certain that it would outlast a power cut: %2.")
                   .arg(name, cause());
        break;
    case DiskState::Damaged:
        text = tr("“%1” is incomplete on disk: writing broke off since %2. The old and the new "
                  "version are both kept in “%3”.")
                   .arg(name, cause(), recoveryFolder);
        break;
    }
    text += QLatin1Char(' ') + wayOut;
    if (isKept && disk != DiskState::Damaged)
        text += QLatin1Char(' ') + tr("Your text is kept in “%1” until then.").arg(recoveryFolder);
    return text;
}

} // namespace quillory
