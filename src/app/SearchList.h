#pragma once

#include "app/SearchFilter.h"

#include <QFrame>
#include <QIcon>
#include <QPointer>

class QLabel;
class QLineEdit;
class QListView;

namespace quillory {

class SearchListModel;

struct SearchRow
{
    QString text;
    QString detail; ///< shown faintly at the end; not searched
    QIcon icon;
    bool enabled = true; ///< others are shown, but cannot be chosen
};

/// A list to search in, over the upper middle of its window: typing narrows it down, the arrows and
/// Page Up and Down move in it, Return or a click chooses, and Escape, a click elsewhere or another
/// window puts it away. Stays quick with a hundred thousand rows.
class SearchList : public QFrame
{
    Q_OBJECT

public:
    explicit SearchList(QWidget* window);

    /// Opens it with nothing typed, nothing listed and the keyboard; \a prompt says what is
    /// searched. Rows may be set before or, while it is open, at any time.
    void open(const QString& prompt);
    void close();
    bool isOpen() const { return m_isOpen; }

    /// What is typed stays; so does the current row, where the user went to it. \a current is the
    /// row to begin at while nothing is typed.
    void setRows(std::vector<SearchRow> rows, int current = 0);
    /// Shows \a text in the place of rows while these are still looked for, until rows are set.
    void setBusy(const QString& text);

    int shownCount() const;
    /// The number of the row that Return would choose; -1 where there is none.
    int currentRow() const;
    QLineEdit& edit() const { return *m_edit; }

Q_SIGNALS:
    /// The list is put away, and the keyboard back where it was.
    void chosen(int row);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool press(QKeyEvent& event);
    void filter();
    void choose();
    void makeCurrent(int place);
    void place();
    void showNote();

    SearchListModel* m_model;
    QLineEdit* m_edit;
    QListView* m_view;
    QLabel* m_note; ///< in the place of rows where there are none
    SearchFilter m_filter;
    QPointer<QWidget> m_focusBefore;
    QString m_busy;
    bool m_isOpen = false;
    int m_first = 0;      ///< the row to begin at
    bool m_moved = false; ///< the user went to another row
};

} // namespace quillory
