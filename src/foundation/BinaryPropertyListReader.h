#pragma once

#include "foundation/PropertyList.h"
#include "foundation/Result.h"

#include <QByteArray>

namespace quillory {

/// Whether \a bytes begin as a property list in binary form does.
bool isBinaryPropertyList(const QByteArray& bytes);

/// Reads a property list in binary form. Objects that are referred to more than once are shared in
/// the list that comes back, so it takes memory in proportion to the file.
///
/// Refuses what does not lie within the file, cycles, objects that overlap (or else a few bytes
/// could stand for any amount), keys that are no texts, sets and other kinds that no property list
/// holds, and integers of more than 64 bits. Where a key occurs twice, the last value counts.
Result<PropertyList> readBinaryPropertyList(const QByteArray& bytes);

} // namespace quillory
