#pragma once

#include "foundation/PropertyList.h"
#include "foundation/Result.h"

#include <QByteArray>

namespace quillory {

/// Writes a property list in binary form. Equal leaves, and containers that are shared, are written
/// once. Reading gives an equal list back. Fails only on lists nested deeper than
/// PropertyList::maximumDepth.
Result<QByteArray> writeBinaryPropertyList(const PropertyList& list);

} // namespace quillory
