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
    /// Where \a needle begins in the text of \a page, in letters of either case.
    virtual std::vector<int> find(int page, const QString& needle) = 0;
    /// Where stretches of a page's text stand, one for each of \a starts, \a length long.
    virtual std::vector<PageMarks> marks(int page, const std::vector<int>& starts, int length) = 0;
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
