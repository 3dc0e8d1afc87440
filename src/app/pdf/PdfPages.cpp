#include "app/pdf/PdfPages.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPainter>
#include <QPdfLink>
#include <QPdfSearchModel>

namespace quillory {

namespace {

QString reason(QPdfDocument::Error error)
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("PdfPages", text); };
    switch (error) {
    case QPdfDocument::Error::IncorrectPassword:
        return tr("it asks for a password");
    case QPdfDocument::Error::UnsupportedSecurityScheme:
        return tr("it is encrypted in a way that is not known here");
    default:
        return tr("it is damaged, or no PDF");
    }
}

} // namespace

PdfPages::PdfPages(const QByteArray& pdf)
{
    m_bytes.setData(pdf);
    m_bytes.open(QIODevice::ReadOnly);
    m_document.load(&m_bytes);
    if (error() != QPdfDocument::Error::None)
        return;
    const int count = m_document.pageCount();
    m_sizes.reserve(size_t(count));
    for (int page = 0; page < count; ++page)
        m_sizes.push_back(m_document.pagePointSize(page));
}

QImage PdfPages::render(int page, double scale, const QRect& part)
{
    QPdfDocumentRenderOptions options;
    options.setRenderFlags(QPdfDocumentRenderOptions::RenderFlag::Annotations);
    options.setScaledSize((m_sizes[size_t(page)] * scale).toSize());
    // Qt takes the last pixel of the part for its edge.
    options.setScaledClipRect(part.adjusted(0, 0, 1, 1));
    QImage image(part.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).drawImage(QPoint(), m_document.render(page, part.size(), options));
    return image;
}

std::vector<PageMarks> PdfPages::find(const QString& needle, int first, int end)
{
    QPdfSearchModel model;
    model.setDocument(&m_document);
    model.setSearchString(needle);
    std::vector<PageMarks> found;
    for (int page = first; page < end; ++page)
        for (const QPdfLink& hit : model.resultsOnPage(page)) {
            const QList<QRectF> rects = hit.rectangles();
            found.push_back({page, {rects.begin(), rects.end()}});
        }
    return found;
}

PdfPagesFactory::PdfPagesFactory()
{
    // What Qt makes of the text around a hit, which is not asked for, is wrong at times, and told.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.pdf.search=false"));
}

std::shared_ptr<PdfFile> PdfPagesFactory::open(const QByteArray& pdf, QString& error)
{
    auto pages = std::make_shared<PdfPages>(pdf);
    if (pages->error() == QPdfDocument::Error::None && !pages->isEmpty())
        return pages;
    error = reason(pages->error());
    return nullptr;
}

} // namespace quillory
