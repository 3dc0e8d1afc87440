#pragma once

#include <QSize>
#include <QSizeF>
#include <vector>

namespace quillory {

/// Where pages lie that are stacked one below the other, each with room around it and for a caption
/// below. Pages are counted from 0; a page's size is in points, where it lies in pixels.
class PageStack
{
public:
    static constexpr int spacing = 10; ///< pixels around each page

    void setSizes(std::vector<QSizeF> sizes);
    void setScale(double pixelsAPoint) { m_scale = pixelsAPoint; }
    void setCaptionHeight(int height) { m_captionHeight = height; }

    int count() const { return int(m_sizes.size()); }
    QSizeF points(int page) const { return m_sizes[size_t(page)]; }
    double widest() const { return m_widest; } ///< points
    double scale() const { return m_scale; }   ///< pixels a point
    int captionHeight() const { return m_captionHeight; }
    /// \a scale, or what is below it where the pages together would be longer than \a longest.
    double bounded(double scale, int longest) const;

    int top(int page) const;      ///< from the upper end of all
    QSize pixels(int page) const; ///< at least one
    int pageAt(int y) const;      ///< from the upper end of all; -1 where there are no pages
    QSize extent() const;         ///< of all; nothing where there are no pages

private:
    std::vector<QSizeF> m_sizes;
    std::vector<double> m_tops; ///< heights of the pages before, in points
    double m_widest = 0;
    double m_scale = 1;
    int m_captionHeight = 0;
};

} // namespace quillory
