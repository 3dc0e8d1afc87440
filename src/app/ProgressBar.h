#pragma once

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace quillory {

/// A strip below the text that tells how much of a long work is done, with a button to cancel it.
/// Empty, and hidden, until it is begun.
class ProgressBar : public QFrame
{
    Q_OBJECT

public:
    explicit ProgressBar(QWidget* parent = nullptr);

    /// What the strip says.
    struct Work
    {
        QString text;   ///< with %1 in the place of the name
        QString name;   ///< shortened where it is long
        QString cancel; ///< what the button will do
    };

    /// Shows the strip.
    void begin(const Work& work);
    /// \a share: from 0 to 1.
    void setShare(double share);
    /// Hides it, and begins at nothing the next time.
    void end();

    int percent() const;

Q_SIGNALS:
    void cancelClicked();

private:
    void build();

    QLabel* m_text = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_cancel = nullptr;
    double m_share = 0;
};

} // namespace quillory
