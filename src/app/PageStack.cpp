#include "app/PageStack.h"

#include <algorithm>
#include <cmath>

namespace quillory {

void PageStack::setSizes(std::vector<QSizeF> sizes)
{
    m_sizes = std::move(sizes);
    m_tops.resize(m_sizes.size());
    m_widest = 0;
    double top = 0;
    for (size_t i = 0; i < m_sizes.size(); ++i) {
        m_tops[i] = top;
        top += m_sizes[i].height();
        m_widest = std::max(m_widest, m_sizes[i].width());
    }
}

double PageStack::bounded(double scale, int longest) const
{
    const double height = m_sizes.empty() ? 1 : m_tops.back() + m_sizes.back().height();
    return std::min(scale, longest / height);
}

int PageStack::top(int page) const
{
    return spacing + int(std::lround(m_tops[size_t(page)] * m_scale)) +
           page * (spacing + m_captionHeight);
}

QSize PageStack::pixels(int page) const
{
    return (points(page) * m_scale).toSize().expandedTo(QSize(1, 1));
}

int PageStack::pageAt(int y) const
{
    int low = 0;
    int high = count();
    while (low < high) {
        const int middle = (low + high) / 2;
        if (top(middle) <= y)
            low = middle + 1;
        else
            high = middle;
    }
    return count() == 0 ? -1 : std::max(0, low - 1);
}

QSize PageStack::extent() const
{
    const int last = count() - 1;
    if (last < 0)
        return {0, 0};
    return {int(m_widest * m_scale) + 2 * spacing,
            top(last) + pixels(last).height() + m_captionHeight + spacing};
}

} // namespace quillory
