#include "app/GoToLineDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <limits>

namespace quillory {

namespace {

/// At least 1; one that is too large to count up to is as good as the largest.
std::optional<qint64> lineNumber(const QString& typed)
{
    static const QRegularExpression form(QStringLiteral("^\\s*0*([1-9]\\d*)\\s*$"));
    const QRegularExpressionMatch match = form.match(typed);
    if (!match.hasMatch())
        return std::nullopt;
    bool fits = false;
    const qint64 number = match.captured(1).toLongLong(&fits);
    return fits ? number : std::numeric_limits<qint64>::max();
}

} // namespace

GoToLineDialog::GoToLineDialog(qint64 current, qint64 last, QWidget* window)
    : QDialog(window), m_field(new QLineEdit(QString::number(current), this))
{
    setWindowTitle(tr("Go to Line"));
    auto* prompt =
        new QLabel(tr("&Line (1 to %1), or line:column").arg(QLocale().toString(last)), this);
    prompt->setBuddy(m_field);
    m_field->selectAll();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &GoToLineDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(prompt);
    layout->addWidget(m_field);
    layout->addWidget(buttons);
}

void GoToLineDialog::accept()
{
    const QString typed = m_field->text();
    const std::optional<qint64> number = lineNumber(typed);
    const std::optional<TextPlace> place = parseTextPlace(typed);
    if (!number && !place) {
        QApplication::beep();
        m_field->selectAll();
        return;
    }
    QDialog::accept();
    if (number)
        Q_EMIT lineChosen(*number);
    else
        Q_EMIT placeChosen(*place);
}

} // namespace quillory
