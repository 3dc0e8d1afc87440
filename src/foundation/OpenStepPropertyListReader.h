#pragma once

#include "foundation/PropertyList.h"
#include "foundation/Result.h"

#include <QString>

namespace quillory {

/// Reads a property list in the OpenStep form, { key = value; list = (a, "b c", <0fbd77>); }. All
/// leaves are texts or data, so 1 and YES are texts. A list of "key = value;" without braces is a
/// dictionary, and so is text of nothing but blanks; an empty file is refused.
///
/// A text without quotes consists of ASCII letters and digits and _ $ / : . - alone. Where a key
/// occurs twice, the last value counts; a key alone stands for itself as its value. In quotes, an
/// octal escape above \177 is a character of the NEXTSTEP encoding and \U0000 a UTF-16 code unit.
Result<PropertyList> readOpenStepPropertyList(const QString& text);

} // namespace quillory
