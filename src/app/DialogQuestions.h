#pragma once

#include "app/UserQuestions.h"

namespace quillory {

/// Asks in real dialogs, which leave the other windows usable.
class DialogQuestions : public UserQuestions
{
public:
    void askToSave(QWidget* window, const QString& name,
                   std::function<void(BeforeClosing)> answer) override;
    void confirm(QWidget* window, const Question& question,
                 std::function<void(bool)> answer) override;
    void askForFiles(QWidget* window, const QString& folder,
                     std::function<void(const QStringList&)> answer) override;
    void askForSavePath(QWidget* window, const QString& title, const QString& suggestion,
                        std::function<void(const QString&)> answer) override;
    void askForFolder(QWidget* window, const QString& title, const QString& folder,
                      std::function<void(const QString&)> answer) override;
    void tell(QWidget* window, const QString& text, const QString& explanation,
              std::function<void()> done) override;
    void showAlert(QWidget* window, const QString& title, const QString& message) override;
};

} // namespace quillory
