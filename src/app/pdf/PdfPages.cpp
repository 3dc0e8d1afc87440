#include "app/pdf/PdfPages.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPdfSelection>

namespace quillory {

namespace {

constexpr int mostWithoutText = 32; ///< characters between two finds

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

std::vector<int> PdfPages::find(int page, const QString& needle)
{
    std::vector<int> starts;
    const QString text = m_document.getAllText(page).text();
    for (qsizetype at = 0; (at = text.indexOf(needle, at, Qt::CaseInsensitive)) >= 0;
         at += needle.size())
        starts.push_back(int(at));
    return starts;
}

std::vector<PageMarks> PdfPages::marks(int page, const std::vector<int>& starts, int length)
{
    const QString text = m_document.getAllText(page).text();
    int shift = 0;
    std::vector<PageMarks> found;
    for (const int start : starts) {
        const QStringView wanted = QStringView(text).mid(start, length);
        QPdfSelection stretch = m_document.getSelectionAtIndex(page, start + shift, length);
        // A place counts characters that have no text, too.
        for (int more = 1; stretch.text() != wanted && more <= mostWithoutText; ++more)
            if (QPdfSelection next =
                    m_document.getSelectionAtIndex(page, start + shift + more, length);
                next.text() == wanted) {
                stretch = next;
                shift += more;
            }
        PageMarks marks{page, {}};
        for (const QPolygonF& part : stretch.bounds())
            marks.rects.push_back(part.boundingRect());
        found.push_back(marks);
    }
    return found;
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
