#pragma once

#include "document/RecoveredDocument.h"

#include <QObject>
#include <QSet>
#include <functional>

namespace quillory {

class DocumentController;
class DocumentWindow;
struct DocumentEnvironment;

/// Brings back what a program that ended in the midst of it had not saved: the texts of the
/// journals that nobody writes any more, and those that a failed save left. Each comes in a window
/// of its own, which says so until the user has decided.
class Recovery : public QObject
{
    Q_OBJECT

public:
    Recovery(DocumentController& controller, const DocumentEnvironment& environment);

    /// Opens a window with the text of the journal \a id and calls \a then; with null where the
    /// journal is not there, belongs to a program that runs, or holds nothing that its file does
    /// not hold too.
    /// \a isExpected: the user knows of the text, and the window says only what is unexpected.
    void recover(const QString& id, const std::function<void(DocumentWindow*)>& then = {},
                 bool isExpected = false);
    /// The same for all that nobody has asked for by its id; \a then is called when their windows
    /// are there.
    void recoverAll(const std::function<void()>& then = {});
    /// Whether a window that is made and opened now is one of these.
    bool isShowing() const { return m_isShowing; }

private:
    void recoverFound(const RecoverableTexts& found, const std::function<void()>& then);
    void tellDamaged(const RecoveredDocument& damaged);
    void open(const QString& id, const RecoveredDocument& recovered,
              const std::function<void(DocumentWindow*)>& then, bool isExpected);
    DocumentWindow& show(const RecoveredDocument& recovered);
    void openRecord(const RecoveryRecord& record, const RecoveredDocument& recovered);

    DocumentController& m_controller;
    const DocumentEnvironment& m_environment;
    QSet<QString> m_asked;
    bool m_isShowing = false;
    QVector<RecoveredDocument> m_damaged; ///< without texts
};

} // namespace quillory
