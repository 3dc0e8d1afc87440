#include "app/RereadFlow.h"

#include "app/UserQuestions.h"
#include "document/Document.h"
#include "foundation/Background.h"
#include "text/EncodingTable.h"

#include <QWidget>

namespace quillory {

RereadFlow::RereadFlow(Document& document, UserQuestions& questions, QWidget& window)
    : m_document(document), m_questions(questions), m_window(window)
{}

void RereadFlow::revert()
{
    askAndRead(StringEncoding::none);
}

void RereadFlow::reopen(StringEncoding encoding)
{
    askAndRead(encoding);
}

void RereadFlow::askAndRead(StringEncoding encoding)
{
    if (m_document.path().isEmpty() || m_reading)
        return;
    if (!m_document.isDocumentEdited()) {
        read(encoding);
        return;
    }
    m_questions.confirm(&m_window,
                        {tr("Read “%1” again and drop the changes?").arg(m_document.displayName()),
                         tr("Undo brings the text back as it is now."), tr("Drop the Changes")},
                        [this, encoding](bool agreed) {
                            if (agreed)
                                read(encoding);
                        });
}

void RereadFlow::read(StringEncoding encoding)
{
    struct Outcome
    {
        ReadResult result;
        bool decoded = false;
    };
    m_reading = true;
    Q_EMIT readingChanged(true);
    // Undo could bring back an edit made while the file is read, but nobody expects to have to.
    m_document.textView().setEditable(false);
    runInBackground(
        this,
        [path = m_document.path(), type = m_document.type(), encoding] {
            Outcome outcome{readDocument(path, type)};
            if (outcome.result.answer)
                outcome.decoded = encoding == StringEncoding::none
                                      ? outcome.result.text.has_value()
                                      : decodeAs(outcome.result, encoding);
            return outcome;
        },
        [this, encoding](const Outcome& outcome) {
            take(outcome.result, outcome.decoded, encoding);
        });
}

void RereadFlow::take(const ReadResult& result, bool decoded, StringEncoding encoding)
{
    m_reading = false;
    m_document.textView().setEditable(!m_document.isUndecoded());
    Q_EMIT readingChanged(false);
    const QString name = m_document.displayName();
    if (!result.answer) {
        Q_EMIT failed(result.message, false);
    } else if (!decoded && encoding == StringEncoding::none) {
        Q_EMIT failed(tr("The encoding of “%1” could not be recognised. The text stays as it was; "
                         "choose Reopen with Encoding from the File menu.")
                          .arg(name),
                      true);
    } else if (!decoded) {
        Q_EMIT failed(tr("“%1” is not text in %2, so the text stays as it was. Choose another "
                         "encoding.")
                          .arg(name, displayName(encoding)),
                      true);
    } else {
        m_document.takeReread(result);
        m_document.textView().setEditable(true);
        Q_EMIT reread();
    }
}

} // namespace quillory
