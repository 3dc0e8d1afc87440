#pragma once

#include <QKeyEvent>
#include <memory>
#include <vector>

namespace quillory {

class TextViewWidget;

/// Which key does what in a text view, as is usual on Linux desktops.
class TextViewKeys
{
public:
    explicit TextViewKeys(TextViewWidget& view);

    /// Whether the view wants \a event for moving, deleting or typing, rather than leaving it to a
    /// shortcut of the window.
    static bool isEditingKey(const QKeyEvent& event);

    /// Does what \a event asks for; false when it asks for nothing.
    bool press(const QKeyEvent& event);

private:
    bool keepsWaiting(const QKeyEvent& event);

    TextViewWidget& m_view;
    std::vector<std::unique_ptr<QKeyEvent>> m_waiting; ///< for a rectangle to be selected
};

} // namespace quillory
