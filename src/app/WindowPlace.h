#pragma once

#include "document/SavedSession.h"

namespace quillory {

class DocumentWindow;

// What a document window is like on the screen and in its text, taken and given back.

/// \a before is what was taken of it the last time: the frame of a window that fills the screen is
/// the one that it had.
SavedWindow placeOf(DocumentWindow& window, const SavedWindow& before);

/// Puts \a window, which is not shown yet, where \a saved was, on the screens that there are now.
/// Without \a activating it does not come to the front when it is shown.
void placeWindow(DocumentWindow& window, const SavedWindow& saved, bool activating);

/// Gives \a window, which is shown, the form, the selections and the place in the text of \a saved.
/// A text that is still being read is scrolled once it is there as far as that, and gets the rest
/// when all of it is, unless the user was quicker. What lies past the end is pulled in.
void showPlace(DocumentWindow& window, const SavedWindow& saved);

} // namespace quillory
