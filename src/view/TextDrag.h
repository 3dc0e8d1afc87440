#pragma once

namespace quillory {

class TextViewWidget;

/// Drags the selected text of \a view with the mouse, until it is dropped or the drag is given up.
/// Where it is moved to another place than \a view itself, it goes from here.
void dragSelectedText(TextViewWidget& view);

} // namespace quillory
