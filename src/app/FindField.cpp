#include "app/FindField.h"

#include <QKeyEvent>

namespace quillory {

namespace {

constexpr int widest = 420; // logical pixels

} // namespace

FindField::FindField(const QString& prompt, QWidget* parent) : QLineEdit(parent)
{
    setPlaceholderText(prompt);
    setAccessibleName(prompt);
    setClearButtonEnabled(true);
    setMaximumWidth(widest);
}

void FindField::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        Q_EMIT findNext(event->modifiers() & Qt::ShiftModifier ? -1 : 1);
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace quillory
