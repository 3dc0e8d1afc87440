#include "preview/Strip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace quillory {

Strip::Strip(QWidget* parent)
    : QFrame(parent), m_text(new QLabel(this)), m_line(new QHBoxLayout(this))
{
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    m_text->setForegroundRole(QPalette::ToolTipText);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_line->setContentsMargins(10, 5, 6, 5);
    m_line->addWidget(m_text, 1);
    hide();
}

void Strip::ask(const QString& text, const QString& toolTip, const std::vector<Answer>& answers)
{
    for (QWidget* button : m_buttons)
        button->deleteLater();
    m_buttons.clear();
    m_text->setText(text);
    m_text->setToolTip(toolTip);
    for (const Answer& answer : answers) {
        auto* button = new QPushButton(answer.label, this);
        button->setAutoDefault(false);
        m_line->addWidget(button);
        m_buttons.push_back(button);
        connect(button, &QPushButton::clicked, this, [this, act = answer.act] {
            hide();
            act();
        });
    }
    show();
}

QString Strip::text() const
{
    return isHidden() ? QString() : m_text->text();
}

} // namespace quillory
