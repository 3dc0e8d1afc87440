#pragma once

#include "app/ComparisonWindow.h"

namespace quillory {

/// Reads the file of \a window's document as it is on disk now, on another thread and in the
/// document's encoding where it can be, and compares it with the text. What cannot be read is told
/// in the window.
void compareWithFile(DocumentWindow& window, const std::vector<ComparisonWindow::Choice>& choices);

} // namespace quillory
