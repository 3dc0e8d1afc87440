#include "view/ScrollScale.h"

#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>

namespace quillory {

namespace {
constexpr qint64 largestRange = 1'000'000'000;
}

void ScrollScale::fit(QScrollBar& bar, qint64 content, qint64 page, int step)
{
    m_factor = content / largestRange + 1;
    m_end = std::max<qint64>(0, content - page);
    m_maximum = int((m_end + m_factor - 1) / m_factor);
    bar.setPageStep(int(std::max<qint64>(1, page / m_factor)));
    bar.setSingleStep(step);
    bar.setRange(0, m_maximum);
}

void ScrollScale::show(QScrollBar& bar, qint64 position) const
{
    const int value = position >= m_end ? m_maximum : int(position / m_factor);
    // At the very top and bottom only what is there.
    bar.setValue(position > 0 && m_maximum > 0 ? std::max(1, value) : value);
}

} // namespace quillory
