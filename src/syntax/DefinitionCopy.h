#pragma once

#include "foundation/PropertyList.h"

#include <QString>
#include <optional>

namespace quillory {

/// Another one for every state of the file at \a path, and the same for a copy of it that keeps its
/// time; empty where there is none.
QString stampOf(const QString& path);

/// The whole dictionary of the definition at \a path, as \a copy keeps it in a form that is read
/// several times faster; none where the definition was written since, or no copy was made. An empty
/// \a copy is none.
std::optional<PropertyList> readDefinitionCopy(const QString& copy, const QString& path);

/// Makes that copy of what was read from a definition whose stamp was \a stamp before. That it
/// cannot be written only costs time.
void writeDefinitionCopy(const QString& copy, const QString& stamp, const PropertyList& dictionary);

} // namespace quillory
