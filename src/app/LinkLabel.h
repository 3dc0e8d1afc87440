#pragma once

#include <QLabel>

namespace quillory {

/// A line of links that mouse and keyboard follow, in a colour that can be read on the window's.
class LinkLabel : public QLabel
{
    Q_OBJECT

public:
    /// \a html is rich text.
    explicit LinkLabel(QString html, QWidget* parent);

protected:
    void changeEvent(QEvent* event) override;

private:
    void takeColour();

    QString m_html;
};

} // namespace quillory
