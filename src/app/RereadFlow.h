#pragma once

#include "text/StringEncoding.h"

#include <QObject>

class QWidget;

namespace quillory {

class Document;
class UserQuestions;
struct ReadResult;

/// Reads a document's file again, as it is now or in another encoding, in the place of the text;
/// edits are dropped only when the user agrees. The file is read on another thread.
class RereadFlow : public QObject
{
    Q_OBJECT

public:
    RereadFlow(Document& document, UserQuestions& questions, QWidget& window);

    /// Does nothing for a document without a file.
    void revert();
    void reopen(StringEncoding encoding);
    /// The same as revert(), without a question: the user has chosen the file over the edits.
    void reload() { read(StringEncoding::none); }

    bool isReading() const { return m_reading; }

Q_SIGNALS:
    void readingChanged(bool reading);
    void reread();
    /// \a undecodable: the file was read, but not as text in the encoding asked for.
    void failed(const QString& message, bool undecodable);

private:
    void askAndRead(StringEncoding encoding);
    void read(StringEncoding encoding);
    void take(const ReadResult& result, bool decoded, StringEncoding encoding);

    Document& m_document;
    UserQuestions& m_questions;
    QWidget& m_window;
    bool m_reading = false;
};

} // namespace quillory
