#pragma once

#include "foundation/PropertyList.h"
#include "foundation/Result.h"

#include <QByteArray>

namespace quillory {

/// A keyed archive whose root is a flat dictionary of texts, numbers and data: a property list with
/// the archived objects in one array, "$objects", that refer to each other by Uid.

/// Writes \a dictionary as a binary archive with all leaves inline. Fails where a value is of
/// another kind than text, number, truth value and data.
Result<QByteArray> encodeKeyedArchive(const PropertyList::Dictionary& dictionary);

/// Reads an archive in binary or XML form. Texts and data may be inline or records of their own; a
/// key whose value is the null object is left out. Refused: another root than a dictionary, keys
/// and values of different number, references that lead nowhere, and records of an unknown class,
/// so also anything nested.
Result<PropertyList::Dictionary> decodeKeyedArchive(const QByteArray& bytes);

} // namespace quillory
