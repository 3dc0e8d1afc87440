#pragma once

class QMenu;

namespace quillory {

class DocumentWindow;

/// Lists the actions of the document's definition.
void fillActionMenu(QMenu& menu, DocumentWindow& window);

} // namespace quillory
