#pragma once

#include "document/DocumentWriter.h"

#include <QObject>
#include <deque>
#include <functional>

class QWidget;

namespace quillory {

class Document;
class UserQuestions;
struct DocumentEnvironment;

/// Saves one document, asking what must be asked first. The bytes are written on another thread
/// while the window stays usable; saves asked for meanwhile run one after the other.
class SaveFlow : public QObject
{
    Q_OBJECT

public:
    /// Told whether the text was saved: not when the user cancelled, or the disk refused.
    using Then = std::function<void(bool saved)>;

    SaveFlow(Document& document, const DocumentEnvironment& environment, UserQuestions& questions,
             QWidget& window);

    /// Saves where the document was saved last; asks for a place where there is none.
    void save(const Then& then = {});
    void saveAs(const Then& then = {});
    /// Writes the text elsewhere; the document stays where it is. The choice begins in \a folder,
    /// where one is given.
    void saveCopy(const QString& folder = {});
    /// Saves over what another program wrote into the file.
    void overwrite();

    /// Saves without a word, neither question nor message nor sign; not where that would be needed.
    /// \a keepsVersion has what the file holds kept first. \a then is told what came of it.
    void saveQuietly(bool keepsVersion, const std::function<void(const SaveResult&)>& then);

    /// Calls \a work when all that was asked for is over. Saves that are asked for from then on
    /// wait until it has called \a done: the file stays as it is, or goes elsewhere, and they with
    /// it.
    using Work = std::function<void(const std::function<void()>& done)>;
    void runBetweenSaves(const Work& work);

    bool isSaving() const { return m_running; }
    /// Calls \a then at once, or when the last save that was asked for is over.
    void whenIdle(const std::function<void()>& then);

Q_SIGNALS:
    void savingChanged(bool saving);
    /// The document now stands on disk as \a path.
    void saved(const QString& path);
    void failed(const quillory::SaveResult& result);
    /// Before saved(), and for saves without a word too: the file is as the text was.
    void written(const quillory::SaveResult& result, bool isAutomatic);

private:
    struct Request
    {
        QString path = {}; ///< empty for where the document is by then
        QString type = {};
        bool isCopy = false;
        Then then = {};
        std::function<void(const SaveResult&)> thenQuietly = {}; ///< makes it one without a word
        bool keepsVersion = true;
        Work work = {}; ///< in the place of a save
    };

    void askForPlace(const QString& title, const QString& folder, bool isCopy, const Then& then);
    void enqueue(const Request& request);
    void runNext();
    void finish(const Request& request, const SaveJob& job, const SaveResult& result);

    Document& m_document;
    const DocumentEnvironment& m_environment;
    UserQuestions& m_questions;
    QWidget& m_window;
    std::deque<Request> m_waiting;
    std::vector<std::function<void()>> m_whenIdle;
    QString m_mayReplaceProtected; ///< the write-protected file that the user agreed to replace
    bool m_running = false;
};

} // namespace quillory
