#pragma once

#include "app/UserQuestions.h"

#include <QDialog>

namespace quillory {

/// A question about something that is to be read exactly as it stands, however long it is. Return
/// and Escape say no.
class ExactQuestion : public QDialog
{
    Q_OBJECT

public:
    /// Deletes itself when it was answered.
    ExactQuestion(QWidget* window, const UserQuestions::Question& question,
                  std::function<void(bool)> answer);
};

} // namespace quillory
