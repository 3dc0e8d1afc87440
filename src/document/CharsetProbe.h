#pragma once

#include "text/StringEncoding.h"

#include <QByteArrayView>

namespace quillory {

/// The encoding that a declaration in \a bytes names: what follows the first "charset=", else the
/// value of the first "encoding=" up to the end of the XML declaration. Where nothing is declared,
/// the one of a UTF-8 or UTF-16 byte-order mark; none when there is neither.
StringEncoding probedEncoding(QByteArrayView bytes);

} // namespace quillory
