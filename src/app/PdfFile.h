#pragma once

#include "app/PageMarks.h"
#include "app/PageSource.h"

#include <QByteArray>
#include <QString>
#include <QtPlugin>
#include <memory>

namespace quillory {

/// A PDF, as the plugin "quillory-pdf" reads it. Any thread may use it, but for what PageSource
/// says; one may wait for another, so that of the application's should not.
class PdfFile : public PageSource
{
public:
    void prepare(const std::function<bool()>&) override {}
    virtual std::vector<QSizeF> pageSizes() const = 0; ///< points
    /// Where \a needle stands, in letters of either case, on the pages from \a first to before
    /// \a end; one mark for each time, in order.
    virtual std::vector<PageMarks> find(const QString& needle, int first, int end) = 0;
};

/// What the plugin answers to.
class PdfFileFactory
{
public:
    virtual ~PdfFileFactory() = default;

    /// Null where \a pdf cannot be read; \a error says why then, fit to follow a colon. Any thread.
    virtual std::shared_ptr<PdfFile> open(const QByteArray& pdf, QString& error) = 0;
};

} // namespace quillory

Q_DECLARE_INTERFACE(quillory::PdfFileFactory, "quillory.PdfFileFactory/1")
