#include "document/ScreenPlacement.h"

#include <algorithm>

namespace quillory {

namespace {

constexpr int graspable = 80; // logical pixels of the upper edge that are enough to drag a window

bool isReachable(const QRect& frame, const QRect& area)
{
    const int inSight =
        std::min(frame.right(), area.right()) - std::max(frame.left(), area.left()) + 1;
    return frame.top() >= area.top() && frame.top() <= area.bottom() - graspable &&
           inSight >= std::min(graspable, frame.width());
}

qint64 sharedArea(const QRect& a, const QRect& b)
{
    const QRect shared = a & b;
    return qint64(shared.width()) * shared.height();
}

} // namespace

QRect placedOnScreens(const QRect& frame, const QString& screen,
                      const std::vector<ScreenArea>& screens)
{
    const auto reaches = [&](const ScreenArea& area) { return isReachable(frame, area.available); };
    if (std::any_of(screens.begin(), screens.end(), reaches))
        return frame;
    auto home = std::find_if(screens.begin(), screens.end(),
                             [&](const ScreenArea& area) { return area.name == screen; });
    if (home == screens.end())
        home = std::max_element(
            screens.begin(), screens.end(), [&](const ScreenArea& a, const ScreenArea& b) {
                return sharedArea(frame, a.available) < sharedArea(frame, b.available);
            });
    const QRect area = home->available;
    QRect placed(frame.topLeft(), frame.size().boundedTo(area.size()));
    placed.moveLeft(std::clamp(placed.left(), area.left(), area.right() - placed.width() + 1));
    placed.moveTop(std::clamp(placed.top(), area.top(), area.bottom() - placed.height() + 1));
    return placed;
}

} // namespace quillory
