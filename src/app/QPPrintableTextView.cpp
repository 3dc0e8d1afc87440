#include "app/QPPrintableTextView.h"

#include "view/Contrast.h"

#include <QFontDatabase>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPrinter>

namespace quillory {

namespace {

constexpr double pointsPerInch = 72;
constexpr double leastContrast = 4.5; ///< of text to paper (WCAG 2.1, 1.4.3)
/// Finding the pages takes about as long as painting them.
constexpr double shareOfPagination = 0.5;

/// Of \a layout, whatever its mode.
QMarginsF marginsOf(const QPageLayout& layout)
{
    return layout.margins(QPageLayout::Point);
}

/// The painter's units become points, and its origin the corner of the paper.
void usePoints(QPainter& painter, const QPageLayout& layout)
{
    const QPaintDevice& device = *painter.device();
    painter.scale(device.logicalDpiX() / pointsPerInch, device.logicalDpiY() / pointsPerInch);
    if (layout.mode() == QPageLayout::StandardMode)
        painter.translate(-marginsOf(layout).left(), -marginsOf(layout).top());
}

} // namespace

void QPPrintableTextView::drawPageBorderWithSize(QPainter& painter, QSizeF size, int page) const
{
    const QString text = m_job.footer.text(page, m_pageCount);
    if (text.isEmpty() || !m_job.footer.isShownOn(page))
        return;
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (!m_job.footer.fontName.isEmpty())
        font.setFamily(m_job.footer.fontName);
    font.setPointSizeF(PrintFooter::fontSize);
    painter.save();
    painter.setFont(font);
    painter.setPen(Qt::black);
    // The painter measures in points, but takes the font's from its device.
    const double scale = pointsPerInch / painter.device()->logicalDpiY();
    const QFontMetricsF metrics(font, painter.device());
    const QSizeF measured(metrics.horizontalAdvance(text) * scale, metrics.height() * scale);
    const double y = m_job.footer.top(size.height(), measured.height());
    painter.translate((size.width() - measured.width()) / 2, y + metrics.ascent() * scale);
    painter.scale(scale, scale);
    painter.drawText(QPointF(), text);
    painter.restore();
}

std::vector<PrintedText::Ink> QPPrintableTextView::inksOf(TextRange range) const
{
    std::vector<PrintedText::Ink> inks;
    if (!m_job.colours)
        return inks;
    const TextRange place{range.location + m_job.range.location, range.length};
    const ColouredText coloured = m_job.text.coloured(place);
    inks.reserve(coloured.runs.size());
    for (const RoleRun& run : coloured.runs) {
        const TextRange shown = run.range.intersection(place);
        const std::optional<Colour> colour = coloured.roles.attributes(run.role).foreground;
        if (shown.isEmpty() || !colour)
            continue;
        const QColor onPaper = darkenedForPaper(
            QColor::fromRgbF(colour->red, colour->green, colour->blue), leastContrast);
        inks.push_back({{shown.location - m_job.range.location, shown.length}, onPaper.rgb()});
    }
    return inks;
}

QPPrintableTextView::Outcome QPPrintableTextView::print(QPagedPaintDevice& device,
                                                        const std::function<bool(Progress)>& goOn)
{
    const QPageLayout layout = device.pageLayout();
    const QSizeF paper = layout.fullRect(QPageLayout::Point).size();
    const QRectF area = QRectF(QPointF(), paper).marginsRemoved(marginsOf(layout));
    const TextSnapshot& whole = m_job.text.text;
    PrintedText text(whole.slice(m_job.range),
                     {.font = m_job.font,
                      .area = area.size(),
                      .lineNumbers = m_job.lineNumbers,
                      .firstLine = whole.lineAt(m_job.range.location).value() + 1});
    if (!text.paginate([&](double share) { return goOn({share * shareOfPagination, 0}); }))
        return Outcome::Cancelled;
    m_pageCount = text.pageCount();
    const int first = std::max(1, m_job.firstPage);
    const int last = m_job.lastPage > 0 ? std::min(m_job.lastPage, m_pageCount) : m_pageCount;
    if (first > last)
        return Outcome::NoSuchPages;

    QPainter painter;
    if (!painter.begin(&device))
        return Outcome::Failed;
    usePoints(painter, layout);
    for (int page = first; page <= last; ++page) {
        if (page > first && !device.newPage())
            return Outcome::Failed;
        m_currentPage = page;
        painter.save();
        painter.translate(area.topLeft());
        text.paintPage(painter, page - 1, inksOf(text.rangeOfPage(page - 1)));
        painter.restore();
        drawPageBorderWithSize(painter, paper, page);
        const double share = double(page - first + 1) / double(last - first + 1);
        if (!goOn({shareOfPagination + share * (1 - shareOfPagination), page})) {
            // A spooler must not get the pages that are there.
            if (auto* printer = dynamic_cast<QPrinter*>(&device))
                printer->abort();
            return Outcome::Cancelled;
        }
    }
    return painter.end() ? Outcome::Printed : Outcome::Failed;
}

} // namespace quillory
