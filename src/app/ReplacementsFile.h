#pragma once

namespace quillory {

class DocumentWindow;

/// Opens the list of the user's text replacements, see TextReplacement; where there is none yet, a
/// sample is put there first.
void editTextReplacements(DocumentWindow& window);

} // namespace quillory
