#include "app/QPPrintableTextView.h"

#include "view/Contrast.h"

#include <QFontDatabase>
#include <QPagedPaintDevice>
#include <QPainter>
#include <algorithm>

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
    const QString text = m_job.footer.text(page, m_isPaginated ? pageCount() : 0);
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

bool QPPrintableTextView::paginate(const QPageLayout& layout,
                                   const std::function<bool(double)>& goOn)
{
    m_paper = layout.fullRect(QPageLayout::Point).size();
    const QRectF area = QRectF(QPointF(), m_paper).marginsRemoved(marginsOf(layout));
    m_corner = area.topLeft();
    const TextSnapshot& whole = m_job.text.text;
    m_text = std::make_unique<PrintedText>(
        whole.slice(m_job.range),
        PrintedText::Form{.font = m_job.font,
                          .area = area.size(),
                          .lineNumbers = m_job.lineNumbers,
                          .firstLine = whole.lineAt(m_job.range.location).value() + 1});
    m_isPaginated = m_text->paginate(goOn);
    return m_isPaginated;
}

void QPPrintableTextView::paintPage(QPainter& painter, int page)
{
    painter.save();
    painter.translate(m_corner);
    m_text->paintPage(painter, page - 1, inksOf(m_text->rangeOfPage(page - 1)));
    painter.restore();
    drawPageBorderWithSize(painter, m_paper, page);
}

QPPrintableTextView::Outcome QPPrintableTextView::print(QPagedPaintDevice& device,
                                                        const std::function<bool(Progress)>& goOn)
{
    const QPageLayout layout = device.pageLayout();
    if (!paginate(layout, [&](double share) { return goOn({share * shareOfPagination, 0}); }))
        return Outcome::Cancelled;
    std::vector<int> pages;
    for (int page = 1; page <= pageCount(); ++page)
        if (m_job.pages.isEmpty() || m_job.pages.contains(page))
            pages.push_back(page);
    if (pages.empty())
        return Outcome::NoSuchPages;
    if (m_job.lastPageFirst)
        std::reverse(pages.begin(), pages.end());

    QPainter painter;
    if (!painter.begin(&device))
        return Outcome::Failed;
    usePoints(painter, layout);
    for (size_t i = 0; i < pages.size(); ++i) {
        if (i > 0 && !device.newPage())
            return Outcome::Failed;
        m_currentPage = pages[i];
        paintPage(painter, m_currentPage);
        const double share = double(i + 1) / double(pages.size());
        if (!goOn({shareOfPagination + share * (1 - shareOfPagination), m_currentPage}))
            return Outcome::Cancelled;
    }
    return painter.end() ? Outcome::Printed : Outcome::Failed;
}

} // namespace quillory
