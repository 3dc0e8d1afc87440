#pragma once

#include <QFrame>
#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace quillory {

/// What the window tells or asks above the page, with buttons to answer.
class Strip : public QFrame
{
    Q_OBJECT

public:
    struct Answer
    {
        QString label;
        std::function<void()> act;
    };

    explicit Strip(QWidget* parent = nullptr);

    /// Shows \a text in the place of what was there; every answer hides it.
    void ask(const QString& text, const QString& toolTip, const std::vector<Answer>& answers);
    /// Empty while hidden.
    QString text() const;

private:
    QLabel* m_text;
    QHBoxLayout* m_line;
    std::vector<QWidget*> m_buttons;
};

} // namespace quillory
