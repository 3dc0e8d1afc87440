#pragma once

namespace quillory {

class DocumentWindow;

/// Has the window show what the document tells while its text is edited: where a bracket was
/// opened, and that something did not work.
void connectEditingAids(DocumentWindow& window);

} // namespace quillory
