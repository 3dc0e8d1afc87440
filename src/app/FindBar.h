#pragma once

#include "editing/find/FindSession.h"

#include <QWidget>

class QLabel;
class QToolButton;

namespace quillory {

class DocumentWindow;
class FindField;

/// The strip below a text that finds and replaces in it. Made when it is first opened, and hidden
/// by Escape.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /// The one of \a window; part of it, and so gone with it.
    static FindBar& of(DocumentWindow& window);

    FindSession& session() { return m_session; }

    /// Opens with what is selected within a line as what is looked for.
    void open(bool replaces);
    void close();
    /// Opens the strip where there is nothing to find yet.
    void findNext(FindSession::Direction direction);
    /// Looks for what is selected.
    void useSelection();
    void selectAll();

    /// How many places there are, and which of them is selected, as it is told.
    QString state() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    explicit FindBar(DocumentWindow& window);

    QToolButton* addSwitch(const QString& label, const QString& name);
    QToolButton* addButton(const QString& icon, const QString& label, const QString& toolTip,
                           const std::function<void()>& act, QWidget* row);
    void build();
    void present(bool replaces);
    void search();
    void reveal(TextRange place);
    void showState();
    bool takeSelection();

    DocumentWindow& m_window;
    FindSession m_session;
    FindField* m_field;
    QWidget* m_findRow; ///< what is beside the field
    FindField* m_replacement;
    QWidget* m_replaceRow;
    QToolButton* m_case = nullptr;
    QToolButton* m_words = nullptr;
    QToolButton* m_regex = nullptr;
    QLabel* m_state;
    QString m_replaced; ///< what Replace All told, until something else is looked for
};

} // namespace quillory
