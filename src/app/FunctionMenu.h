#pragma once

class QMenu;

namespace quillory {

class DocumentWindow;

/// Lists the functions of the document's text.
void fillFunctionMenu(QMenu& menu, DocumentWindow& window);

} // namespace quillory
