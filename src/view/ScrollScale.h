#pragma once

class QScrollBar;

#include <QtGlobal>

namespace quillory {

/// Positions in a content of any size on a scroll bar, which counts in int: beyond a thousand
/// million pixels a step of the bar stands for several.
class ScrollScale
{
public:
    /// Sets the bar's range, page and step without a signal. Sizes are in pixels, not negative.
    void fit(QScrollBar& bar, qint64 content, qint64 page, int step);
    void show(QScrollBar& bar, qint64 position) const;
    qint64 position(int value) const { return value == m_maximum ? m_end : value * m_factor; }

private:
    qint64 m_factor = 1;
    qint64 m_end = 0; ///< the position at the bar's maximum
    int m_maximum = 0;
};

} // namespace quillory
