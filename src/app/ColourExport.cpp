#include "app/ColourExport.h"

#include "app/UserQuestions.h"
#include "document/Document.h"
#include "foundation/Background.h"
#include "syntax/ColouredHtml.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QWidget>

namespace quillory {

namespace {

constexpr TextOffset longestAtOnce =
    TextOffset(512) * 1024; ///< UTF-16 code units, with the lines around them

} // namespace

ColourExport::ColourExport(Document& document, UserQuestions& questions, QWidget& window)
    : m_document(document), m_questions(questions), m_window(window)
{}

void ColourExport::exportAsHtml()
{
    const QString path = m_document.path();
    const QString name = QFileInfo(m_document.displayName()).fileName() + QStringLiteral(".html");
    const QDir folder = path.isEmpty() ? QDir::current() : QFileInfo(path).dir();
    m_questions.askForSavePath(&m_window, tr("Export as HTML"), folder.filePath(name),
                               [this](const QString& chosen) {
                                   if (!chosen.isEmpty())
                                       write(chosen);
                               });
}

void ColourExport::write(const QString& path)
{
    m_exporting = true;
    Q_EMIT exportingChanged();
    runInBackground(
        this,
        [job = m_document.syntaxColouring().colouringJob(), path,
         title = m_document.displayName()]() -> QString {
            QSaveFile file(path);
            if (!file.open(QIODevice::WriteOnly))
                return file.errorString();
            QTextStream out(&file);
            writeHtmlPage(out, job.coloured(), title);
            out.flush();
            return file.commit() ? QString() : file.errorString();
        },
        [this, path](const QString& error) {
            m_exporting = false;
            Q_EMIT exportingChanged();
            if (!error.isEmpty())
                Q_EMIT failed(tr("“%1” was not written: %2. Export to another place, or make room "
                                 "there.")
                                  .arg(QDir::toNativeSeparators(path), error));
        });
}

QString ColourExport::selectionAsHtml(const QString& fontFamily) const
{
    const ColouringJob job = m_document.syntaxColouring().colouringJob();
    QStringList parts;
    TextOffset total = 0;
    for (const Selection& selection : m_document.textView().selections()) {
        if (selection.isCaret())
            continue;
        const TextRange lines = m_document.completeString().lineRangeForRange(selection.range());
        total += lines.length;
        if (total > longestAtOnce)
            return {};
        parts += htmlFragment(job.coloured(lines), selection.range(), fontFamily);
    }
    return parts.join(QString());
}

} // namespace quillory
