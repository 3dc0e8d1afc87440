#pragma once

#include "document/DocumentReader.h"
#include "document/VersionStore.h"

namespace quillory {

/// Reads \a version of a file as a document of kind \a type, as readDocument() reads the file
/// itself; text in the encoding that it was opened in. Waits for the device.
ReadResult readVersion(VersionStore& store, const FileVersion& version, const QString& type);

} // namespace quillory
