#pragma once

#include <QWidget>

class QLabel;
class QToolButton;

namespace quillory {

class Document;

/// The line below a document's text: where the caret is, what is selected, and the form in which
/// the file is kept. A click on a field opens what changes it.
class StatusLine : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent = nullptr);

    /// Shows the caret and the selection of \a document; of bounded cost.
    void showPosition(Document& document);
    /// Shows how \a document is kept on disk.
    void showForm(const Document& document);
    /// What goes on in the background; empty for nothing. A button beside it gives it up where that
    /// is possible.
    void setActivity(const QString& activity, bool canCancel = false);

    QString positionText() const;
    QString selectionText() const;
    QString encodingText() const;
    QString lineBreaksText() const;
    QString definitionText() const;
    QString activityText() const;

Q_SIGNALS:
    void positionClicked();
    void formClicked();
    void activityCancelled();

private:
    QToolButton* addField(const QString& toolTip);

    QToolButton* m_position;
    QLabel* m_selection;
    QLabel* m_activity;
    QToolButton* m_cancel;
    QToolButton* m_definition;
    QToolButton* m_lineBreaks;
    QToolButton* m_encoding;
};

} // namespace quillory
