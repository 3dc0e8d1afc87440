#include "app/FileComparison.h"

#include "app/DocumentMessages.h"
#include "app/DocumentWindow.h"
#include "document/Document.h"
#include "document/DocumentType.h"
#include "foundation/Background.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

namespace quillory {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("FileComparison", text);
}

struct FileNow
{
    ReadResult result;
    QDateTime time;
};

} // namespace

void compareWithFile(DocumentWindow& window, const std::vector<ComparisonWindow::Choice>& choices)
{
    const Document& document = window.document();
    runInBackground(
        &window,
        [path = document.path(), type = document.type(), encoding = document.record().encoding] {
            FileNow file{readDocument(path, type), QFileInfo(path).lastModified()};
            if (file.result.answer && type == DocumentType::text)
                decodeAs(file.result, encoding);
            return file;
        },
        [&window, choices](const FileNow& file) {
            const QString name = window.document().displayName();
            if (!file.result.text) {
                showReadProblem(window,
                                file.result.answer ? tr("“%1” is no text any more.").arg(name)
                                                   : file.result.message,
                                false);
                return;
            }
            const QString time = QLocale().toString(file.time, QLocale::ShortFormat);
            ComparisonWindow::compare(window, tr("%1 on disk, %2").arg(name, time),
                                      *file.result.text, tr("%1 in this window").arg(name),
                                      window.document().completeString(), choices);
        });
}

} // namespace quillory
