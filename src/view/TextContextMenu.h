#pragma once

class QContextMenuEvent;

namespace quillory {

class TextViewWidget;

/// Shows the menu that the view's editor keeps, if any: at the mouse, which first sets the caret
/// where it is outside the selected text, or, asked for by a key, at the caret.
void showContextMenu(TextViewWidget& view, QContextMenuEvent& event);

} // namespace quillory
