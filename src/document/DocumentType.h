#pragma once

#include <QString>

/// The three kinds of file, by the names that reading and writing compare.
namespace quillory::DocumentType {

inline const QString archive = QStringLiteral("Quillory Document");
inline const QString propertyList = QStringLiteral("Plist Document");
inline const QString text = QStringLiteral("Text Document");

/// The extension of native archives, without a dot.
inline const QString archiveExtension = QStringLiteral("quillory");

/// The kind of the file at \a path. A file that begins with the magic number of binary property
/// lists is an archive or a list whatever its name; for others the extension decides, and what
/// cannot be read is text.
QString ofFile(const QString& path);

/// The kind that a file at \a path is to have, by the extension alone.
QString ofNewFile(const QString& path);

} // namespace quillory::DocumentType
