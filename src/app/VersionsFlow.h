#pragma once

#include "document/VersionStore.h"

#include <QObject>
#include <QPointer>
#include <atomic>
#include <functional>
#include <memory>

class QMenu;

namespace quillory {

class DocumentWindow;
class VersionsWindow;
struct ReadResult;
struct SaveResult;

/// Brings back what the file of a window's document held before: the versions that are kept of it
/// in a menu and in a window, and any of them in the place of the text. What the store is asked for
/// is read on another thread.
class VersionsFlow : public QObject
{
    Q_OBJECT

public:
    /// A child of \a window.
    explicit VersionsFlow(DocumentWindow& window);

    /// Adds the versions, a little later those that have to be looked for.
    void fillMenu(QMenu& menu);
    /// All of them, each compared with the text.
    void browse();
    /// Null while that is not shown.
    VersionsWindow* browser() const;

    /// What the file was when it was last saved by command, or opened; read from the file where it
    /// still is that.
    void revertToLastSaved();
    void revertToLastOpened();
    /// Puts \a version in the place of the text, as one step that can be undone.
    void restore(const FileVersion& version);

    /// Calls \a then with \a version, or with null where it could not be read, which is told. Once
    /// \a cancelled is set nobody waits for the answer, which does not come.
    void read(const FileVersion& version, const std::function<void(const ReadResult*)>& then,
              const std::shared_ptr<std::atomic_bool>& cancelled = {});

    /// "Today, 14:05:12", or the day in place of that.
    static QString timeOf(const FileVersion& version);

private:
    using Versions = QVector<FileVersion>;
    void list(QObject* context, const std::function<void(const Versions&)>& then);
    void noteWritten(const SaveResult& result, bool isAutomatic);
    void restoreDigest(const QByteArray& digest);
    void put(const TextSnapshot& text);
    void complain(const QString& message);

    /// What was in the file at a certain time.
    struct Milestone
    {
        bool isInFile = true;   ///< still
        QByteArray digest = {}; ///< of what is in the store, if it is

        void noteWritten(const SaveResult& result);
        bool isThere() const { return isInFile || !digest.isEmpty(); }
    };

    DocumentWindow& m_window;
    QString m_path; ///< of the file that the next two are about
    Milestone m_opened;
    Milestone m_saved;
    QPointer<QObject> m_browser;
};

} // namespace quillory
