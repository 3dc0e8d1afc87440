#pragma once

class QMenu;

namespace quillory {

class DocumentWindow;

/// Lists the languages that words can be checked by; while they are being looked for, says so.
void fillSpellingLanguageMenu(QMenu& menu, DocumentWindow& window);

} // namespace quillory
