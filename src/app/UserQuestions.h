#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QWidget;

namespace quillory {

/// What the editor asks and tells the user in dialogs. No call waits: the answer comes to the
/// function given, once, and an answer of "cancel" or "nothing" when the dialog is closed. Every
/// dialog belongs to \a window, or to none where that is null.
class UserQuestions
{
public:
    enum class BeforeClosing
    {
        Save,
        Discard,
        Cancel
    };

    /// A question with a yes of its own name.
    struct Question
    {
        QString text;
        QString explanation;
        QString yes; ///< the label of the button that goes on
        /// Shown as it stands, in a fixed width, where what is asked about is exactly this.
        QString exact = {};
    };

    virtual ~UserQuestions() = default;

    /// Whether to save the edits of the document called \a name before it is closed.
    virtual void askToSave(QWidget* window, const QString& name,
                           std::function<void(BeforeClosing)> answer) = 0;
    virtual void confirm(QWidget* window, const Question& question,
                         std::function<void(bool)> answer) = 0;
    /// \a folder is where the choice begins; an empty list means none.
    virtual void askForFiles(QWidget* window, const QString& folder,
                             std::function<void(const QStringList&)> answer) = 0;
    /// \a suggestion is a path; the answer is one, empty for none. A file that exists at the
    /// answered path may be replaced: the user was asked.
    virtual void askForSavePath(QWidget* window, const QString& title, const QString& suggestion,
                                std::function<void(const QString&)> answer) = 0;
    /// \a folder is where the choice begins; the answer is a folder, empty for none. Folders can be
    /// made in the dialog.
    virtual void askForFolder(QWidget* window, const QString& title, const QString& folder,
                              std::function<void(const QString&)> answer) = 0;
    /// Tells of a problem; \a done is called once it was read.
    virtual void tell(QWidget* window, const QString& text, const QString& explanation,
                      std::function<void()> done) = 0;
    /// Tells what a command came to.
    virtual void showAlert(QWidget* window, const QString& title, const QString& message) = 0;
};

} // namespace quillory
