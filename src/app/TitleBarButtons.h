#pragma once

#include <QWidget>

class QMenu;
class QToolButton;

namespace quillory {

class DocumentWindow;
class FunctionMenu;
class StatisticsPopover;

/// The buttons at the right end of a window's menu bar: what there is to know of the document, its
/// settings, the places in the text that one can go to, and the actions of its definition. What
/// they open is made when it is first asked for, and filled each time that it opens.
class TitleBarButtons : public QWidget
{
    Q_OBJECT

public:
    static constexpr double usualAlpha = 0.7;

    explicit TitleBarButtons(DocumentWindow& window);

    /// How much of the buttons shows, 0 to 1. The pointer brings back what does not.
    void setAlpha(double alpha);
    double alpha() const { return m_alpha; }
    /// With what the pointer brings back.
    double shownAlpha() const { return underMouse() ? std::max(m_alpha, usualAlpha) : m_alpha; }

    QToolButton& infoButton() const { return *m_infoButton; }
    QToolButton& settingsButton() const { return *m_settingsButton; }
    QToolButton& navigationButton() const { return *m_navigationButton; }
    QToolButton& actionButton() const { return *m_actionButton; }
    QMenu& navigationMenu();
    QMenu& actionMenu();
    FunctionMenu& functions();
    StatisticsPopover& information();

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void add(QToolButton& button, const QString& icon, const QString& name, const QString& toolTip);

    DocumentWindow& m_window;
    double m_alpha = usualAlpha;
    QToolButton* m_infoButton;
    QToolButton* m_settingsButton;
    QToolButton* m_navigationButton;
    QToolButton* m_actionButton;
    FunctionMenu* m_functions = nullptr;        ///< made when first needed
    StatisticsPopover* m_information = nullptr; ///< made when first needed
};

} // namespace quillory
