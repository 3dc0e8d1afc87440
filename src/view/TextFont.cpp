#include "view/TextFont.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

namespace quillory {

TextFont::TextFont(const QFont& font, int tabColumns)
    : m_font(font), m_tabColumns(std::max(1, tabColumns))
{
    const QFontMetricsF metrics(font);
    m_advance = std::max(1.0, metrics.horizontalAdvance(QLatin1Char('0')));
    // A little air between the rows, which also holds the accents and depths of fallback fonts.
    const double height = std::max(metrics.lineSpacing(), metrics.height());
    m_rowHeight = std::max(1, int(std::ceil(height * 1.1)));
    m_baseline = int(std::round((m_rowHeight - metrics.height()) / 2 + metrics.ascent()));
}

bool TextFont::hasControlPictures() const
{
    if (!m_hasControlPictures)
        m_hasControlPictures = QFontMetricsF(m_font).inFontUcs4(0x2400);
    return *m_hasControlPictures;
}

} // namespace quillory
