#include "view/NumberFont.h"

#include "view/TextFont.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <algorithm>

namespace quillory {

namespace {

constexpr double leastShare = 0.6; ///< that numbers have of the text's size, and at most all of it

QFont fitting(const QFont& wanted, const QFont& text)
{
    QFont font = wanted;
    const double size = QFontInfo(wanted).pointSizeF();
    const double textSize = QFontInfo(text).pointSizeF();
    const double fit = std::clamp(size, textSize * leastShare, textSize);
    if (fit != size)
        font.setPointSizeF(fit);
    return font;
}

} // namespace

NumberFont::NumberFont(const QFont& wanted, const TextFont& text)
    : m_font(fitting(wanted, text.font())), m_rawFont(QRawFont::fromFont(m_font)),
      m_glyphs(m_rawFont.glyphIndexesForString(QStringLiteral("0123456789")))
{
    if (m_glyphs.size() != qsizetype(m_digits.size()) || m_glyphs.contains(0))
        m_glyphs.clear();
    const QFontMetricsF own(m_font);
    const QFontMetricsF row(text.font());
    m_height = row.height();
    m_ascent = row.ascent();
    for (size_t digit = 0; digit < m_digits.size(); ++digit)
        m_digits[digit] = own.horizontalAdvance(QChar(u'0' + char16_t(digit)));
}

void NumberFont::draw(QPainter& painter, std::span<const Placed> numbers) const
{
    QList<quint32> glyphs;
    QList<QPointF> positions;
    painter.setFont(m_font);
    for (const auto& [number, baseline] : numbers) {
        const QString text = QString::number(number);
        if (m_glyphs.isEmpty()) {
            painter.drawText(baseline, text);
            continue;
        }
        double x = baseline.x();
        for (const QChar unit : text) {
            const int digit = unit.digitValue();
            glyphs.append(m_glyphs[digit]);
            positions.append({x, baseline.y()});
            x += m_digits[size_t(digit)];
        }
    }
    QGlyphRun run;
    run.setRawFont(m_rawFont);
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    painter.drawGlyphRun({}, run);
}

double NumberFont::widthOf(qsizetype number) const
{
    double width = 0;
    do
        width += m_digits[size_t(number % 10)];
    while ((number /= 10) > 0);
    return width;
}

} // namespace quillory
