#include "app/PrintPages.h"

#include <QPainter>

namespace quillory {

namespace {

constexpr int betweenReports = 100; // milliseconds

} // namespace

PrintPages::PrintPages(const QPPrintableTextView::Job& job, const QPageLayout& layout, Found found)
    : m_view(job), m_layout(layout), m_found(std::move(found))
{}

void PrintPages::prepare(const std::function<bool()>& meanwhile)
{
    const bool areAll = m_view.paginate(m_layout, [&](double) {
        if (!m_sinceTold.isValid() || m_sinceTold.elapsed() >= betweenReports) {
            m_sinceTold.start();
            m_found(m_view.pageCount(), false);
        }
        return meanwhile();
    });
    if (areAll)
        m_found(m_view.pageCount(), true);
}

QImage PrintPages::render(int page, double scale, const QRect& part)
{
    QImage image(part.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.translate(-part.topLeft());
    painter.scale(scale, scale);
    m_view.paintPage(painter, page + 1);
    return image;
}

} // namespace quillory
