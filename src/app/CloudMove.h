#pragma once

namespace quillory {

class DocumentWindow;

/// Moves the file of \a window's document: with the tag 1 to the documents of the cloud container,
/// with 0 back to the user's documents. Done aside, between saves; a failure is told in the window,
/// and the file is where it was. What a symbolic link leads to is moved, and the link stays.
/// Without a container or a file nothing happens.
void moveToOrFromCloud(DocumentWindow& window, int tag);

/// The document's file lies in the container.
bool isCloudItem(const DocumentWindow& window);

} // namespace quillory
