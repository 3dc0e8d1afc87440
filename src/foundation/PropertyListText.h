#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace quillory {

/// The text of a property list that is not in binary form, without a byte-order mark: in UTF-8,
/// UTF-16 or UTF-32, or in the encoding that an XML declaration names.
Result<QString> propertyListText(const QByteArray& bytes);

/// Whether \a text is in XML form. The other form of text begins with "<" only where its root is
/// data, "<0fbd 77>".
bool isXmlPropertyList(QStringView text);

/// A failure at \a offset (in UTF-16 code units) of \a text.
Failure failureAt(QStringView text, qsizetype offset, const QString& message);

/// For messages: "U+0007".
QString codePointName(char32_t codePoint);

} // namespace quillory
