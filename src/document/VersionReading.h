#pragma once

#include "document/DocumentReader.h"
#include "document/VersionStore.h"

namespace quillory {

/// Reads \a version of a file as a document of kind \a type, as readDocument() reads the file
/// itself; text in the encoding that it was opened in. Waits for the device; \a cancelled, looked
/// at now and then, ends it early with the answer no.
ReadResult readVersion(VersionStore& store, const FileVersion& version, const QString& type,
                       const std::atomic_bool* cancelled = nullptr);

} // namespace quillory
