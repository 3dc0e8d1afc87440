#pragma once

#include "foundation/PropertyList.h"

namespace quillory {

class Document;

// What of a document's form its window brings back after the program was started anew, beside the
// text: a dictionary with the keys
//
//   "selectedDefinition"  index of the selection in the definitions list
//   "selectedEncoding"    index of the selection in the encoding list
//   "lbFormat"            the line-break format
//   "baseURL"             the base address of the preview, a text
//
// An index means something only while the definitions and the encodings are the same.

/// The indexes are -1 where nothing is selected.
PropertyList::Dictionary willEncodeRestorableState(Document& document);

/// To be called once \a document is open. A key that is absent, or an index outside of its list,
/// leaves what it is for as it is.
void didDecodeRestorableState(Document& document, const PropertyList::Dictionary& state);

} // namespace quillory
