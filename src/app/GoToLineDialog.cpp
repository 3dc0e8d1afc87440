#include "app/GoToLineDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillory {

GoToLineDialog::GoToLineDialog(qint64 current, qint64 last, QWidget* window)
    : QDialog(window), m_field(new QLineEdit(QString::number(current), this))
{
    setWindowTitle(tr("Go to Line"));
    auto* prompt =
        new QLabel(tr("&Line (1 to %1), or line:column").arg(QLocale().toString(last)), this);
    prompt->setBuddy(m_field);
    m_field->selectAll();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("&Go"));
    connect(buttons, &QDialogButtonBox::accepted, this, &GoToLineDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(prompt);
    layout->addWidget(m_field);
    layout->addWidget(buttons);
}

void GoToLineDialog::accept()
{
    const std::optional<TextPlace> place = parseTextPlace(m_field->text());
    if (!place) {
        QApplication::beep();
        m_field->selectAll();
        return;
    }
    QDialog::accept();
    Q_EMIT chosen(*place);
}

} // namespace quillory
