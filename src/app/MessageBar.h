#pragma once

#include "app/Message.h"

#include <QFrame>

class QLabel;

namespace quillory {

/// From now on assistive technologies are told of messages that come up. Needs the application
/// object.
void installMessageAccessibility();

/// One message across the top of a window: what happened, the ways out, and a cross to put it away.
class MessageBar : public QFrame
{
    Q_OBJECT

public:
    explicit MessageBar(const Message& message, QWidget* parent = nullptr);

    QString text() const;

Q_SIGNALS:
    /// The user put it away.
    void dismissed();

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addButton(const Message::WayOut& wayOut);
    void updateColours();

    Message::Kind m_kind;
    QLabel* m_icon;
    QLabel* m_text;
    QLayout* m_buttons;
};

} // namespace quillory
