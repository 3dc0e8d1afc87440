#pragma once

#include "text/StringEncoding.h"

#include <QByteArray>
#include <QStringView>

namespace quillory {

/// The encoding that a character set's registered name, or a common alias, stands for
/// (https://www.iana.org/assignments/character-sets), without regard to case, spaces, hyphens and
/// underscores; none for any other name.
StringEncoding encodingForIanaName(QStringView name);

/// The encoding that a file's text-encoding attribute names, as "NAME;CODE" with a registered name
/// and a decimal code of which either may be missing; the code decides before the name. None when
/// neither is known.
StringEncoding encodingForAttribute(QByteArrayView attribute);

/// The attribute's value for a known encoding; empty otherwise.
QByteArray attributeForEncoding(StringEncoding encoding);

} // namespace quillory
