#include "app/HeadlessPrint.h"

#include "app/PrintFlow.h"
#include "app/StartOptions.h"
#include "document/Document.h"
#include "document/DocumentEnvironment.h"
#include "document/DocumentType.h"

#include <QCoreApplication>
#include <QDir>
#include <cstdio>

namespace quillory {

namespace {

int fail(const QString& message)
{
    std::fputs(qUtf8Printable(u"quillory: "_qs + message + u'\n'), stderr);
    return 1;
}

} // namespace

int printToFile(const DocumentEnvironment& environment, const StartOptions& options)
{
    const QString path = options.targets.front().path;
    Document document(environment);
    const ReadResult read = readDocument(path, DocumentType::ofFile(path));
    if (!read.answer)
        return fail(read.message);
    document.adopt(read);
    document.windowControllerDidLoadNib(nullptr);
    if (document.isUndecoded())
        return fail(QCoreApplication::translate("HeadlessPrint",
                                                "“%1” was not printed: it is in no encoding that "
                                                "is known.")
                        .arg(QDir::toNativeSeparators(path)));
    QPPrintableTextView::Job job = printJob(document, environment.defaults);
    job.lineNumbers = options.printsLineNumbers;
    job.colours = options.printsColours;
    QPPrintableTextView view(job);
    const PrintAnswer answer =
        writePdf(view, options.printTo, {PrintSetup::usualLayout(), document.displayName()},
                 [](QPPrintableTextView::Progress) { return true; });
    if (answer.outcome == QPPrintableTextView::Outcome::Printed)
        return 0;
    return fail(QCoreApplication::translate("HeadlessPrint", "“%1” was not written: %2.")
                    .arg(QDir::toNativeSeparators(options.printTo), answer.error));
}

} // namespace quillory
