#pragma once

#include <QStringView>

namespace quillory {

/// The offset of the first UTF-16 code unit that no XML document can hold, not even as a character
/// reference (https://www.w3.org/TR/xml, production 2): most control characters, U+FFFE, U+FFFF and
/// unpaired surrogates. -1 where there is none.
qsizetype forbiddenInXml(QStringView text);

} // namespace quillory
