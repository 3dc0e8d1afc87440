#pragma once

#include <QString>

class QWidget;

namespace quillory {

/// More than a message box can show: it would outgrow the screen.
bool isLongAlert(const QString& message);

/// Shows \a message below \a title, to be scrolled and copied, as plain text.
void showLongAlert(QWidget* window, const QString& title, const QString& message);

} // namespace quillory
