#include "app/ExactQuestion.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillory {

namespace {

constexpr int linesInSight = 12;
constexpr int columnsInSight = 72;

QLabel* newLabel(const QString& text)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QPlainTextEdit* newExactText(const QString& text)
{
    auto* view = new QPlainTextEdit(text);
    view->setReadOnly(true);
    view->setTabChangesFocus(true);
    view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    view->setWordWrapMode(QTextOption::WrapAnywhere);
    const QFontMetrics metrics(view->font());
    const int margin = 2 * int(view->document()->documentMargin()) + 2 * view->frameWidth();
    const int lines = std::clamp(int(text.count(u'\n')) + 2, 3, linesInSight);
    view->setMinimumSize(columnsInSight * metrics.averageCharWidth() + margin,
                         lines * metrics.lineSpacing() + margin);
    return view;
}

} // namespace

ExactQuestion::ExactQuestion(QWidget* window, const UserQuestions::Question& question,
                             std::function<void(bool)> answer)
    : QDialog(window)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Quillory"));
    auto* layout = new QVBoxLayout(this);
    QLabel* text = newLabel(question.text);
    QFont bold = text->font();
    bold.setBold(true);
    text->setFont(bold);
    layout->addWidget(text);
    layout->addWidget(newLabel(question.explanation));
    QPlainTextEdit* exact = newExactText(question.exact);
    exact->setAccessibleName(question.text);
    layout->addWidget(exact, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    buttons->addButton(question.yes, QDialogButtonBox::AcceptRole)->setAutoDefault(false);
    QPushButton* cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setDefault(true);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(this, &QDialog::finished, this,
            [answer = std::move(answer)](int result) { answer(result == QDialog::Accepted); });
    cancel->setFocus();
}

} // namespace quillory
