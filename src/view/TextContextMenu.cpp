#include "view/TextContextMenu.h"

#include "editing/SelectionCommands.h"
#include "view/TextViewWidget.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QWindow>

namespace quillory {

void showContextMenu(TextViewWidget& view, QContextMenuEvent& event)
{
    QPTextView& editor = view.editor();
    const std::shared_ptr<QMenu> menu = editor.contextMenu();
    if (!menu) {
        event.ignore();
        return;
    }
    event.accept();
    QPoint place = event.globalPos();
    if (event.reason() == QContextMenuEvent::Mouse) {
        const TextOffset offset = view.offsetAtPoint(event.pos());
        if (!isInSelectedText(editor, offset))
            editor.setSelection(Selection::caret(offset));
    } else {
        view.showCaret();
        place = view.viewport()->mapToGlobal(view.caretRect().bottomLeft());
    }
    // The menu has no parent, since the editor keeps it; the desktop wants to know whose it is.
    menu->winId();
    if (menu->windowHandle() && view.window()->windowHandle())
        menu->windowHandle()->setTransientParent(view.window()->windowHandle());
    menu->popup(place);
}

} // namespace quillory
