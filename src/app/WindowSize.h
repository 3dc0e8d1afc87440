#pragma once

class QSettings;

namespace quillory {

class DocumentWindow;

// How large a document window opens: as large as the last one that was closed, at first 90 columns
// and 40 rows of text; never larger than the screen.

void applyInitialSize(DocumentWindow& window, const QSettings& state);
void storeSize(const DocumentWindow& window, QSettings& state);

} // namespace quillory
