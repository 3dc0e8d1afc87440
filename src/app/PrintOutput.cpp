#include "app/PrintOutput.h"

#include <QCoreApplication>
#include <QPdfWriter>
#include <QPrintEngine>
#include <QPrinter>
#include <QProcess>
#include <QSaveFile>
#include <QTemporaryFile>

namespace quillory {

namespace {

using Outcome = QPPrintableTextView::Outcome;

/// What the toolkit's dialog set of the print system's own options: names and values in turn.
constexpr auto printSystemOptions = QPrintEngine::PrintEnginePropertyKey(0xfe00);

constexpr int patience = 100; ///< milliseconds between looks whether printing was given up

Outcome writePages(QPPrintableTextView& view, QIODevice& device, const PageForm& form,
                   const GoOn& goOn)
{
    QPdfWriter writer(&device);
    writer.setTitle(form.title);
    writer.setCreator(QStringLiteral("Quillory"));
    writer.setPageLayout(form.layout);
    return view.print(writer, goOn);
}

/// The values of "sides" (RFC 8011, 5.2.8).
QString sidesOf(const QPrinter& printer)
{
    const bool isLandscape = printer.pageLayout().orientation() == QPageLayout::Landscape;
    switch (printer.duplex()) {
    case QPrinter::DuplexNone:
        return QStringLiteral("one-sided");
    case QPrinter::DuplexLongSide:
        return QStringLiteral("two-sided-long-edge");
    case QPrinter::DuplexShortSide:
        return QStringLiteral("two-sided-short-edge");
    case QPrinter::DuplexAuto:
        break;
    }
    return isLandscape ? QStringLiteral("two-sided-short-edge")
                       : QStringLiteral("two-sided-long-edge");
}

/// Has \a lp take a file over; the error, if it does not.
QString runLp(const QStringList& arguments, const std::function<bool()>& goOn)
{
    QProcess lp;
    lp.setStandardInputFile(QProcess::nullDevice());
    lp.start(QStringLiteral("lp"), arguments, QIODevice::ReadOnly);
    if (!lp.waitForStarted(-1))
        return QCoreApplication::translate("PrintOutput", "“lp” of the package cups-client could "
                                                          "not be started");
    while (!lp.waitForFinished(patience) && lp.state() != QProcess::NotRunning) {
        if (!goOn()) {
            lp.kill();
            lp.waitForFinished();
        }
    }
    if (lp.exitStatus() == QProcess::NormalExit && lp.exitCode() == 0)
        return {};
    const QString said = QString::fromLocal8Bit(lp.readAllStandardError()).simplified();
    return said.isEmpty() ? QStringLiteral("lp: %1").arg(lp.exitCode()) : said;
}

} // namespace

PrinterQueue PrinterQueue::of(const QPrinter& printer)
{
    PrinterQueue queue{printer.printerName(), {}};
    const auto add = [&](const QString& key, const QString& value) {
        queue.options << QStringLiteral("-o")
                      << (value.isEmpty() ? key : key + QLatin1Char('=') + value);
    };
    queue.options << QStringLiteral("-n") << QString::number(printer.copyCount());
    if (printer.copyCount() > 1 && printer.collateCopies())
        add(QStringLiteral("Collate"), QStringLiteral("True"));
    add(QStringLiteral("media"), printer.pageLayout().pageSize().key());
    add(QStringLiteral("sides"), sidesOf(printer));
    if (printer.pageLayout().orientation() == QPageLayout::Landscape)
        add(QStringLiteral("landscape"), {});
    const QStringList own = printer.printEngine()->property(printSystemOptions).toStringList();
    for (qsizetype i = 0; i + 1 < own.size(); i += 2)
        add(own[i], own[i + 1]);
    return queue;
}

PrintAnswer writePdf(QPPrintableTextView& view, const QString& path, const PageForm& form,
                     const GoOn& goOn)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {Outcome::Failed, 0, 0, file.errorString()};
    Outcome outcome = writePages(view, file, form, goOn);
    if (outcome == Outcome::Printed && !file.commit())
        outcome = Outcome::Failed;
    return {outcome, view.pageCount(), view.currentPage(), file.errorString()};
}

PrintAnswer queuePages(QPPrintableTextView& view, const PrinterQueue& queue, const PageForm& form,
                       const GoOn& goOn)
{
    QTemporaryFile pages;
    if (!pages.open())
        return {Outcome::Failed, 0, 0, pages.errorString()};
    Outcome outcome = writePages(view, pages, form, goOn);
    const bool isThere =
        outcome == Outcome::Printed && pages.flush() && pages.error() == QFile::NoError;
    PrintAnswer answer{outcome, view.pageCount(), view.currentPage()};
    if (!isThere) {
        answer.error = pages.errorString();
        if (outcome == Outcome::Printed)
            answer.outcome = Outcome::Failed;
        return answer;
    }
    QStringList arguments = queue.options;
    if (!queue.name.isEmpty())
        arguments << QStringLiteral("-d") << queue.name;
    arguments << QStringLiteral("-t") << form.title << pages.fileName();
    bool isGivenUp = false;
    answer.error = runLp(arguments, [&] {
        isGivenUp = !goOn({1, answer.currentPage});
        return !isGivenUp;
    });
    if (!answer.error.isEmpty())
        answer.outcome = isGivenUp ? Outcome::Cancelled : Outcome::Failed;
    return answer;
}

} // namespace quillory
