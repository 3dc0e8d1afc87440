#pragma once

#include "app/TextPlace.h"

#include <QDialog>

class QLineEdit;

namespace quillory {

/// A sheet that asks for a line, and a column where wanted: "12" or "12:5".
class GoToLineDialog : public QDialog
{
    Q_OBJECT

public:
    /// \a current is the caret's line, \a last the text's last one; both count from 1.
    GoToLineDialog(qint64 current, qint64 last, QWidget* window);

Q_SIGNALS:
    /// At least 1; there may be no such line.
    void lineChosen(qint64 number);
    void placeChosen(quillory::TextPlace place);

public Q_SLOTS:
    /// Beeps and stays when what was typed is no place.
    void accept() override;

private:
    QLineEdit* m_field;
};

} // namespace quillory
