#pragma once

#include <QString>

class QMenu;

namespace quillory {

class DocumentWindow;

/// The submenu of templates, files of the user's for new documents: those of the folder, a submenu
/// for each folder in it, and what keeps them.
void fillTemplateMenu(QMenu& menu, DocumentWindow& window);

/// Only the templates, for other menus.
void addTemplates(QMenu& menu, DocumentWindow& window);

/// Opens a new document with the text of the file at \a path, and with its encoding, line breaks
/// and language; it takes the place of \a window's where that is untouched. What cannot be read is
/// told in \a window.
void newFromTemplate(const QString& path, DocumentWindow& window);

/// Asks for a name, and saves a copy of the text among the templates.
void saveAsTemplate(DocumentWindow& window);

} // namespace quillory
