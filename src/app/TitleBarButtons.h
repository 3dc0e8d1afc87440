#pragma once

#include <QWidget>

class QMenu;
class QToolButton;

namespace quillory {

class DocumentWindow;
class FunctionMenu;

/// The pull-down buttons at the right end of a window's menu bar: the places in the text that one
/// can go to, and the actions of its definition. Their menus are made when they are first asked
/// for, and filled each time that they open.
class TitleBarButtons : public QWidget
{
    Q_OBJECT

public:
    explicit TitleBarButtons(DocumentWindow& window);

    QToolButton& navigationButton() const { return *m_navigationButton; }
    QToolButton& actionButton() const { return *m_actionButton; }
    QMenu& navigationMenu();
    QMenu& actionMenu();
    FunctionMenu& functions();

private:
    QToolButton* addButton(const QString& icon, const QString& name, const QString& toolTip);

    DocumentWindow& m_window;
    QToolButton* m_navigationButton;
    QToolButton* m_actionButton;
    FunctionMenu* m_functions = nullptr; ///< made when first needed
};

} // namespace quillory
