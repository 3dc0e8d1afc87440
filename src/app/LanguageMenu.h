#pragma once

class QMenu;

namespace quillory {

class DocumentWindow;

/// Lists the definitions that a document can be given.
void fillLanguageMenu(QMenu& menu, DocumentWindow& window);

/// Lists the themes, which are those of all windows.
void fillThemeMenu(QMenu& menu, DocumentWindow& window);

/// Shows, in the desktop's file manager, where the user's definitions and themes lie.
void showSyntaxFolder(DocumentWindow& window);

} // namespace quillory
