#pragma once

#include <QRect>
#include <QString>
#include <vector>

namespace quillory {

/// A screen of the desktop, in the logical pixels of all of them together.
struct ScreenArea
{
    QString name;
    QRect available; ///< what panels leave for windows
};

/// Where a window that stood at \a frame on the screen called \a screen is put now: there, while
/// its upper edge can be reached with the pointer; else within the screen of that name, or the one
/// that most of it is on, or the first one, and no larger than that. \a screens has at least one.
QRect placedOnScreens(const QRect& frame, const QString& screen,
                      const std::vector<ScreenArea>& screens);

} // namespace quillory
