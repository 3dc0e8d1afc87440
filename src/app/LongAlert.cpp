#include "app/LongAlert.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillory {

namespace {

constexpr qsizetype longestShort = 600; // UTF-16 code units
constexpr qsizetype mostLines = 12;
constexpr QSize size{640, 420}; // logical pixels

} // namespace

bool isLongAlert(const QString& message)
{
    return message.size() > longestShort || message.count(u'\n') >= mostLines;
}

void showLongAlert(QWidget* window, const QString& title, const QString& message)
{
    auto* dialog = new QDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QStringLiteral("Quillory"));
    auto* heading = new QLabel(title, dialog);
    heading->setTextFormat(Qt::PlainText);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    auto* text = new QPlainTextEdit(dialog);
    text->setReadOnly(true);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setPlainText(message);
    text->setAccessibleName(title);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, dialog);
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(heading);
    layout->addWidget(text, 1);
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    dialog->resize(size);
    buttons->button(QDialogButtonBox::Ok)->setFocus();
    dialog->open();
}

} // namespace quillory
