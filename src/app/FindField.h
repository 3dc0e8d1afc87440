#pragma once

#include <QLineEdit>

namespace quillory {

/// A field for what is looked for: Return finds on, Shift+Return back.
class FindField : public QLineEdit
{
    Q_OBJECT

public:
    /// \a prompt stands in the empty field, and is its name for assistive technologies.
    FindField(const QString& prompt, QWidget* parent);

Q_SIGNALS:
    /// \a step is 1 or, for what is before, -1.
    void findNext(int step);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace quillory
