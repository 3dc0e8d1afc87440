#include "app/DialogQuestions.h"

#include "app/ExactQuestion.h"
#include "app/LongAlert.h"
#include "document/DocumentType.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace quillory {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("DialogQuestions", text);
}

QMessageBox* newBox(QWidget* window, QMessageBox::Icon icon, const QString& text,
                    const QString& explanation)
{
    auto* box =
        new QMessageBox(icon, QStringLiteral("Quillory"), text, QMessageBox::NoButton, window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(explanation);
    // The explanation too, which may be what a server or a program said.
    for (QLabel* label : box->findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    return box;
}

QStringList nameFilters()
{
    return {tr("All files") + QStringLiteral(" (*)"),
            tr("Text files") + QStringLiteral(" (*.txt *.text *.md *.log)"),
            tr("Property lists") + QStringLiteral(" (*.plist)"),
            tr("Quillory documents") +
                QStringLiteral(" (*.%1)").arg(DocumentType::archiveExtension)};
}

} // namespace

void DialogQuestions::askToSave(QWidget* window, const QString& name,
                                std::function<void(BeforeClosing)> answer)
{
    QMessageBox* box = newBox(window, QMessageBox::Warning,
                              tr("Save the changes to “%1” before closing?").arg(name),
                              tr("Changes that are not saved will be lost."));
    box->setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box->setDefaultButton(QMessageBox::Save);
    QObject::connect(box, &QMessageBox::finished, box, [answer = std::move(answer)](int button) {
        answer(button == QMessageBox::Save      ? BeforeClosing::Save
               : button == QMessageBox::Discard ? BeforeClosing::Discard
                                                : BeforeClosing::Cancel);
    });
    box->open();
}

void DialogQuestions::confirm(QWidget* window, const Question& question,
                              std::function<void(bool)> answer)
{
    if (!question.exact.isEmpty()) {
        (new ExactQuestion(window, question, std::move(answer)))->open();
        return;
    }
    QMessageBox* box = newBox(window, QMessageBox::Question, question.text, question.explanation);
    QPushButton* yes = box->addButton(question.yes, QMessageBox::AcceptRole);
    box->setDefaultButton(box->addButton(QMessageBox::Cancel));
    QObject::connect(box, &QMessageBox::finished, box, [box, yes, answer = std::move(answer)] {
        answer(box->clickedButton() == yes);
    });
    box->open();
}

void DialogQuestions::askForFiles(QWidget* window, const QString& folder,
                                  std::function<void(const QStringList&)> answer)
{
    auto* dialog = new QFileDialog(window, tr("Open"), folder);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilters(nameFilters());
    QObject::connect(
        dialog, &QFileDialog::finished, dialog, [dialog, answer = std::move(answer)](int result) {
            answer(result == QDialog::Accepted ? dialog->selectedFiles() : QStringList());
        });
    dialog->open();
}

void DialogQuestions::askForSavePath(QWidget* window, const QString& title,
                                     const QString& suggestion,
                                     std::function<void(const QString&)> answer)
{
    const QFileInfo suggested(suggestion);
    auto* dialog = new QFileDialog(window, title, suggested.path());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    if (suggested.suffix() == QLatin1StringView("pdf")) {
        dialog->setNameFilter(tr("PDF files") + QStringLiteral(" (*.pdf)"));
        dialog->setDefaultSuffix(QStringLiteral("pdf"));
    } else {
        dialog->setNameFilters(nameFilters());
    }
    dialog->selectFile(suggested.fileName());
    QObject::connect(
        dialog, &QFileDialog::finished, dialog, [dialog, answer = std::move(answer)](int result) {
            const QStringList files = dialog->selectedFiles();
            answer(result == QDialog::Accepted && !files.isEmpty() ? files.front() : QString());
        });
    dialog->open();
}

void DialogQuestions::askForFolder(QWidget* window, const QString& title, const QString& folder,
                                   std::function<void(const QString&)> answer)
{
    auto* dialog = new QFileDialog(window, title, folder);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    QObject::connect(
        dialog, &QFileDialog::finished, dialog, [dialog, answer = std::move(answer)](int result) {
            const QStringList files = dialog->selectedFiles();
            answer(result == QDialog::Accepted && !files.isEmpty() ? files.front() : QString());
        });
    dialog->open();
}

void DialogQuestions::tell(QWidget* window, const QString& text, const QString& explanation,
                           std::function<void()> done)
{
    QMessageBox* box = newBox(window, QMessageBox::Warning, text, explanation);
    box->setStandardButtons(QMessageBox::Ok);
    QObject::connect(box, &QMessageBox::finished, box, [done = std::move(done)] { done(); });
    box->open();
}

void DialogQuestions::showAlert(QWidget* window, const QString& title, const QString& message)
{
    if (isLongAlert(message)) {
        showLongAlert(window, title, message);
        return;
    }
    QMessageBox* box = newBox(window, QMessageBox::Information, title, message);
    box->setStandardButtons(QMessageBox::Ok);
    box->open();
}

} // namespace quillory
