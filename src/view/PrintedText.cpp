#include "view/PrintedText.h"

#include <QLocale>
#include <QPainter>
#include <algorithm>

namespace quillory {

namespace {

/// Text is laid out in this part of a point, so that its measures, which are whole numbers in part,
/// are fine enough for paper.
constexpr double unitsPerPoint = 8;
/// So many pages are laid out between two reports.
constexpr int pagesBetweenReports = 16;
constexpr QColor numberColour(120, 120, 120);

TextFont printedFont(const QFont& font, int tabColumns)
{
    QFont scaled = font;
    const double points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * 0.75;
    scaled.setPixelSize(std::max(1, qRound(points * unitsPerPoint)));
    scaled.setHintingPreference(QFont::PreferNoHinting);
    return TextFont(scaled, tabColumns);
}

} // namespace

PrintedText::PrintedText(const TextSnapshot& text, const Form& form)
    : m_font(printedFont(form.font, form.tabColumns)), m_firstLine(form.firstLine)
{
    m_storage.replaceCharactersInRange({}, text);
    m_geometry = std::make_unique<TextGeometry>(m_storage, m_font);
    if (form.lineNumbers) {
        const auto digits = QString::number(text.lineCount() + form.firstLine - 1).size();
        m_gutter = double(digits + 2) * m_font.advance();
    }
    m_geometry->setWrapWidth(
        std::max(m_font.advance(), form.area.width() * unitsPerPoint - m_gutter));
    m_rowsPerPage =
        std::max(1, int(form.area.height() * unitsPerPoint / double(m_font.rowHeight())));
}

bool PrintedText::paginate(const std::function<bool(double)>& goOn)
{
    const auto length = double(std::max<TextOffset>(1, m_storage.length()));
    m_starts = {0};
    m_pageCount = 0;
    int rows = 0;
    for (auto row = std::optional(m_geometry->rowAt(TextOffset(0))); row;
         row = m_geometry->rowAfter(*row)) {
        // What is behind the last line break needs no page.
        const bool isNothing = row->range.isEmpty() && row->range.location == m_storage.length();
        if (rows == m_rowsPerPage && !isNothing) {
            m_starts.push_back(row->range.location);
            ++m_pageCount;
            rows = 0;
            if ((m_pageCount == 1 || m_pageCount % pagesBetweenReports == 0) &&
                !goOn(double(row->range.location) / length))
                return false;
        }
        ++rows;
    }
    m_pageCount = int(m_starts.size());
    return true;
}

TextRange PrintedText::rangeOfPage(int page) const
{
    const auto next = size_t(page) + 1;
    return TextRange::between(m_starts[size_t(page)],
                              next < m_starts.size() ? m_starts[next] : m_storage.length());
}

std::vector<ColourRun> PrintedText::coloursOf(const TextGeometry::Segment& segment,
                                              const std::vector<Ink>& inks) const
{
    const TextRange whole{segment.base, segment.layout->length()};
    auto ink = std::partition_point(inks.begin(), inks.end(), [&](const Ink& each) {
        return each.range.end() <= whole.location;
    });
    std::vector<ColourRun> colours;
    for (; ink != inks.end() && ink->range.location < whole.end(); ++ink) {
        const TextRange shown = ink->range.intersection(whole);
        colours.push_back({segment.indexOf(shown.location), int(shown.length), ink->colour});
    }
    return colours;
}

void PrintedText::paintNumber(QPainter& painter, const TextGeometry::Row& row, double y) const
{
    const TextSnapshot& text = m_storage.snapshot();
    const bool isBehindLastBreak =
        row.content.isEmpty() && row.content.location == text.length() && !text.isEmpty();
    if (row.range.location != row.content.location || isBehindLastBreak)
        return;
    const QRectF place(0, y, m_gutter - 2 * m_font.advance(), m_font.rowHeight());
    painter.setFont(m_font.font());
    painter.setPen(numberColour);
    painter.drawText(place, int(Qt::AlignRight | Qt::AlignVCenter),
                     QString::number(row.line.value() + m_firstLine));
}

void PrintedText::paintPage(QPainter& painter, int page, const std::vector<Ink>& inks)
{
    painter.save();
    painter.scale(1 / unitsPerPoint, 1 / unitsPerPoint);
    auto row = std::optional(m_geometry->rowAt(rangeOfPage(page).location));
    for (int i = 0; i < m_rowsPerPage && row; ++i, row = m_geometry->rowAfter(*row)) {
        const double y = double(i) * m_font.rowHeight();
        if (m_gutter > 0)
            paintNumber(painter, *row, y);
        m_geometry->forEachSegment(
            *row, 0, m_geometry->wrapWidth(), [&](const TextGeometry::Segment& segment) {
                segment.layout->setColours(coloursOf(segment, inks), qRgb(0, 0, 0));
                segment.layout->draw(painter, {m_gutter + segment.x, y}, segment.row);
            });
    }
    painter.restore();
}

} // namespace quillory
