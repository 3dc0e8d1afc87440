#include "view/NumberFont.h"

#include "view/TextFont.h"

#include <QFontInfo>
#include <QFontMetricsF>
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
    : m_font(fitting(wanted, text.font()))
{
    const QFontMetricsF own(m_font);
    const QFontMetricsF row(text.font());
    m_height = row.height();
    m_ascent = row.ascent();
    for (size_t digit = 0; digit < m_digits.size(); ++digit)
        m_digits[digit] = own.horizontalAdvance(QChar(u'0' + char16_t(digit)));
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
