#pragma once

#include "document/ByteSource.h"

#include <QByteArray>
#include <QString>
#include <QVector>
#include <functional>
#include <ostream>

namespace quillory {

/// A source that gives \a bytes in small pieces.
ByteSource sourceOf(const QByteArray& bytes);

QByteArray contentOf(const QString& path);
void writeFile(const QString& path, const QByteArray& bytes);

/// While it lives, a process of root has the rights of a user of no account; that of anyone else
/// keeps its own.
class Unprivileged
{
public:
    Unprivileged();
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    ~Unprivileged();

private:
    bool m_wasRoot;
};

/// A folder with a file to be saved over, and who saves it.
struct SaveScenario
{
    enum class By
    {
        User,
        UserAfterRoot, ///< a user saves what root has made
        Root
    };

    const char* name;
    By by = By::User;
    /// Makes files in the folder, beginning with "file.txt" (which \a makeFile writes); false where
    /// the file system cannot.
    std::function<bool(const QString& folder)> prepare;
    bool inPlace = false; ///< keeping all that belongs to the file means writing over it
};

std::ostream& operator<<(std::ostream& stream, const SaveScenario& scenario);

/// In each, the document is saved to file.txt in the folder.
const QVector<SaveScenario>& saveScenarios();

/// The bytes that the scenarios' file holds, or starts with.
QByteArray oldContent();

/// All that belongs to the files of a folder beside their bytes, one line each: what a save must
/// not change.
QByteArray factsOf(const QString& folder);

} // namespace quillory
