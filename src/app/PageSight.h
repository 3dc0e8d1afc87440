#pragma once

#include "app/PageRenderer.h"
#include "app/PageStack.h"

#include <QPoint>
#include <QRect>

namespace quillory {

/// The part of a stack of pages that a window shows. Rectangles are in pixels of the window.
struct PageSight
{
    const PageStack& stack;
    QPoint scrolled;  ///< where the window begins in the stack
    QSize size;       ///< of the window
    double ratio = 1; ///< device pixels a pixel

    QRect window() const { return {QPoint(), size}; }
    QRect rectOf(int page) const;
    QRectF rectOf(const PageTile& tile) const;
    /// Those that \a visible, a part of the window, shows of a page.
    std::vector<PageTile> tilesOf(int page, const QRect& visible) const;
    /// What the window shows, and then what half a window below will.
    std::vector<PageTile> tiles() const;
};

} // namespace quillory
