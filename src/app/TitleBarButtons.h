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
    explicit TitleBarButtons(DocumentWindow& window);

    QToolButton& infoButton() const { return *m_infoButton; }
    QToolButton& settingsButton() const { return *m_settingsButton; }
    QToolButton& navigationButton() const { return *m_navigationButton; }
    QToolButton& actionButton() const { return *m_actionButton; }
    QMenu& navigationMenu();
    QMenu& actionMenu();
    FunctionMenu& functions();
    StatisticsPopover& information();

private:
    void add(QToolButton& button, const QString& icon, const QString& name, const QString& toolTip);

    DocumentWindow& m_window;
    QToolButton* m_infoButton;
    QToolButton* m_settingsButton;
    QToolButton* m_navigationButton;
    QToolButton* m_actionButton;
    FunctionMenu* m_functions = nullptr;        ///< made when first needed
    StatisticsPopover* m_information = nullptr; ///< made when first needed
};

} // namespace quillory
