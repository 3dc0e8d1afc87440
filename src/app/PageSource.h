#pragma once

#include <QImage>
#include <functional>

namespace quillory {

/// Pages to be looked at, whatever they come from. What is asked of it is asked on threads of the
/// pool, by one at a time.
class PageSource
{
public:
    virtual ~PageSource() = default;

    /// Called once, first. Where finding the pages takes long, \a meanwhile is called now and then,
    /// which may draw those that were found, and ends it by false.
    virtual void prepare(const std::function<bool()>& meanwhile) = 0;
    /// Draws \a part of \a page, which is counted from 0 and one of those that were found. \a part
    /// is in pixels, of which \a scale make a point.
    virtual QImage render(int page, double scale, const QRect& part) = 0;
};

} // namespace quillory
