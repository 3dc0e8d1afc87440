#pragma once

#include "app/UserQuestions.h"

namespace quillory::test {

/// Answers every question at once, as the test set it up, and remembers what was asked and told.
class ScriptedQuestions : public UserQuestions
{
public:
    BeforeClosing beforeClosing = BeforeClosing::Cancel;
    bool agrees = false;
    QStringList files;
    QString savePath;
    QString folder;

    QStringList asked; ///< what each question was about, oldest first
    QString exact;     ///< what the last one showed as it stands
    QStringList told;

    void askToSave(QWidget*, const QString& name,
                   std::function<void(BeforeClosing)> answer) override
    {
        asked += QStringLiteral("save ") + name;
        answer(beforeClosing);
    }

    void confirm(QWidget*, const Question& question, std::function<void(bool)> answer) override
    {
        asked += question.yes;
        exact = question.exact;
        answer(agrees);
    }

    void askForFiles(QWidget*, const QString&,
                     std::function<void(const QStringList&)> answer) override
    {
        asked += QStringLiteral("files");
        answer(files);
    }

    void askForSavePath(QWidget*, const QString& title, const QString&,
                        std::function<void(const QString&)> answer) override
    {
        asked += title;
        answer(savePath);
    }

    void askForFolder(QWidget*, const QString& title, const QString&,
                      std::function<void(const QString&)> answer) override
    {
        asked += title;
        answer(folder);
    }

    void tell(QWidget*, const QString&, const QString& explanation,
              std::function<void()> done) override
    {
        told += explanation;
        done();
    }

    void showAlert(QWidget*, const QString& title, const QString& message) override
    {
        told += title + u' ' + message;
    }
};

} // namespace quillory::test
