#pragma once

#include "document/FileWatch.h"
#include "text/TextSnapshot.h"

#include <QElapsedTimer>
#include <QObject>
#include <optional>

namespace quillory {

class DocumentWindow;

/// What the window of a document does when another program changes, renames or deletes its file: a
/// text without edits follows the file, one with edits is kept until the user decides.
class ExternalChanges : public QObject
{
    Q_OBJECT

public:
    /// A child of \a window. It begins when the window was first painted.
    explicit ExternalChanges(DocumentWindow& window);

private:
    void watchFile();
    void takeChange();
    void followName(const QString& path);
    void tellChanged();
    void tellGone();
    void takeRestored();

    DocumentWindow& m_window;
    FileWatch m_watch;
    QTimer m_later;    ///< another change, while the last one is being taken
    QString m_watched; ///< the document's path then
    /// While the file is gone: the text, if it was not edited.
    std::optional<TextSnapshot> m_unedited;
    QElapsedTimer m_reading;  ///< since the file was last begun to be read again
    qint64 m_lastReading = 0; ///< how long that took, in milliseconds
};

} // namespace quillory
