#pragma once

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace quillory {

/// A strip below the text that tells how much of a file has been read, with a button to cancel.
/// Empty, and hidden, until it is begun.
class LoadingBar : public QFrame
{
    Q_OBJECT

public:
    explicit LoadingBar(QWidget* parent = nullptr);

    /// Shows the strip for the file \a name.
    void begin(const QString& name);
    /// \a share: from 0 to 1.
    void setShare(double share);
    /// Hides it.
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
