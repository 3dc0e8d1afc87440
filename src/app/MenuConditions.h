#pragma once

namespace quillory {

class DocumentWindow;
enum class Offer;

// When commands of the menus can be used.

/// The whole text has been read.
bool isThere(const DocumentWindow& window);
/// Nothing is being read or saved either, and no program is waited for.
bool isIdle(const DocumentWindow& window);
/// There is a file to read again.
bool hasFile(const DocumentWindow& window);
/// The bytes of the file made a text.
bool isUnderstood(const DocumentWindow& window);
/// Something is selected, be it at one place of several.
bool hasSelection(const DocumentWindow& window);
/// That may be changed or taken away.
bool canDelete(const DocumentWindow& window);
/// The text may be changed.
bool canReplace(const DocumentWindow& window);
/// There may be tags to close: the language has them.
bool canCloseTag(const DocumentWindow& window);
/// The definition has a word for what one can go to.
Offer offerOfFunctions(const DocumentWindow& window);
/// The caret is in a line, and there are such. Not looked for in a long text.
Offer offerOfNeighbours(const DocumentWindow& window);
/// Moving the file to or from the cloud container, hidden where there is none; notes in the user
/// defaults whether there is ("isIcloudAvailable").
Offer offerOfCloud(const DocumentWindow& window);

} // namespace quillory
