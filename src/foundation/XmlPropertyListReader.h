#pragma once

#include "foundation/PropertyList.h"
#include "foundation/Result.h"

#include <QString>

namespace quillory {

/// Reads a property list in XML form. The header and the <plist> around the list may be missing,
/// and what follows the list is ignored; apart from that, whatever is not exactly right is refused,
/// so that a damaged list is never repaired by guessing: unknown elements, text between elements,
/// numbers and dates that are not spelled exactly, a key without a value, a second root. Where a
/// key occurs twice, the last value counts; characters in <data> that are not base64 are skipped.
///
/// A document type that declares an entity is refused, so nothing expands and no file is read. Line
/// ends in texts become LF, as XML demands.
///
/// A dictionary that holds nothing but an integer of 32 bits under "CF$UID" is a Uid.
Result<PropertyList> readXmlPropertyList(const QString& text);

} // namespace quillory
