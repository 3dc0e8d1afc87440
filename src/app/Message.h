#pragma once

#include <QString>
#include <functional>
#include <vector>

class QMenu;

namespace quillory {

/// Something a document window tells its user, with the ways out.
struct Message
{
    enum class Kind
    {
        Note,
        Warning,
        Problem
    };

    /// A button, or, where \a fill is given, a button with a menu that \a fill makes when it opens.
    /// Pressing it leaves the message: whoever acts takes it away once it is no longer true.
    struct WayOut
    {
        QString label;
        std::function<void()> act;
        std::function<void(QMenu&)> fill = {};
    };

    Kind kind = Kind::Note;
    QString text;
    std::vector<WayOut> waysOut = {};
};

} // namespace quillory
