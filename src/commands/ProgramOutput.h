#pragma once

#include "text/StringEncoding.h"
#include "text/TextSnapshot.h"

#include <QByteArray>

namespace quillory {

/// The text of what a program wrote: UTF-8. Bytes that are not are read in \a encoding, that of the
/// text that the program was given, since many programs pass on what they read; where that does not
/// fit either, every byte that is no part of a character becomes U+FFFD; what is around it is kept.
TextSnapshot textOfOutput(const QByteArray& bytes, StringEncoding encoding);

} // namespace quillory
