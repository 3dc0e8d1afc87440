#pragma once

#include "text/StringEncoding.h"

#include <QString>
#include <optional>

namespace quillory {

/// \a text as it can stand in an address: every character but ASCII letters, digits and
/// -_.!~*'();/?:@&=+$, (RFC 2396, section 2) becomes its bytes in \a encoding, each as a percent
/// sign and two hexadecimal digits. A percent sign is escaped too, and so are the characters of
/// \a also. UTF-16 and UTF-32 go without a byte-order mark. Nothing when a character does not fit
/// the encoding, as a lone surrogate does not.
std::optional<QString> withPercentEscapes(QStringView text, StringEncoding encoding,
                                          QLatin1StringView also = {});

} // namespace quillory
