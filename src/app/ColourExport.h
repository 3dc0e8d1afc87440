#pragma once

#include <QObject>

namespace quillory {

class Document;
class UserQuestions;

/// Takes the text of a window elsewhere with its colours.
class ColourExport : public QObject
{
    Q_OBJECT

public:
    ColourExport(Document& document, UserQuestions& questions, QWidget& window);

    /// Asks for a place, and writes the whole text there as a page of HTML, on another thread.
    void exportAsHtml();
    bool isExporting() const { return m_exporting; }

    /// The selected text as HTML for the clipboard. Empty where nothing is selected, or more than
    /// can be coloured without a noticeable wait.
    QString selectionAsHtml(const QString& fontFamily) const;

Q_SIGNALS:
    void exportingChanged();
    /// \a message names the file and what went wrong.
    void failed(const QString& message);

private:
    void write(const QString& path);

    Document& m_document;
    UserQuestions& m_questions;
    QWidget& m_window;
    bool m_exporting = false;
};

} // namespace quillory
