#pragma once

#include "app/QPPrintableTextView.h"

#include <QPageLayout>
#include <QStringList>

class QPrinter;

namespace quillory {

using GoOn = std::function<bool(QPPrintableTextView::Progress)>;

/// What printing came to.
struct PrintAnswer
{
    QPPrintableTextView::Outcome outcome;
    int pageCount = 0;
    int currentPage = 0; ///< the one drawn last
    QString error = {};  ///< what the file system or the print system said, if it failed
};

/// The paper, and what those who get the pages are told that they are.
struct PageForm
{
    QPageLayout layout;
    QString title;
};

/// The queue of a printer, and how it is to print.
struct PrinterQueue
{
    QString name; ///< empty for the default one
    /// For lp(1): copies, sides and whatever else the dialog has.
    QStringList options;

    static PrinterQueue of(const QPrinter& printer);
};

/// Writes the pages as a PDF file: entirely, or not at all. On any thread.
PrintAnswer writePdf(QPPrintableTextView& view, const QString& path, const PageForm& form,
                     const GoOn& goOn);

/// Hands all of the pages to a printer by lp(1), or none of them. On a thread that may wait; what
/// a QPrinter got is printed, up to where it was given up.
PrintAnswer queuePages(QPPrintableTextView& view, const PrinterQueue& queue, const PageForm& form,
                       const GoOn& goOn);

} // namespace quillory
