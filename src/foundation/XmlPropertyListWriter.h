#pragma once

#include "foundation/PropertyList.h"
#include "foundation/Result.h"

#include <QByteArray>

namespace quillory {

/// Renders a property list in XML form, in UTF-8: one element a line, tabs for indentation, keys
/// sorted by UTF-16 code units, data in lines of 76 columns. What is written reads back as the same
/// list, but for fractions of seconds in dates and the sign of a negative zero, which the form
/// cannot hold. A Uid is written as a dictionary with the key "CF$UID".
///
/// Fails on what XML cannot hold (control characters, unpaired surrogates, dates outside the years
/// 0 to 9999), on lists nested deeper than PropertyList::maximumDepth, and where shared values
/// would grow to much more than the list itself: 16 MiB and ten times its size in memory.
Result<QByteArray> writeXmlPropertyList(const PropertyList& list);

} // namespace quillory
