#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>
#include <optional>

namespace quillory {

/// One file of a shared folder, as it is offered for opening.
struct CloudEntry
{
    QString title;     ///< the file's name without its extension
    QString extension; ///< without the dot
    QString body;      ///< the beginning of the text in one line, see cloudPreview()
    QDateTime date;    ///< of the last modification
    QUrl url;
};

/// What a list shows of \a text, of which the first 151 UTF-16 code units are enough: up to 150 of
/// them, or else the first 149 and "…"; then a space for each "\n\n", and for each "\n" that is
/// left. A surrogate pair is not cut in two.
QString cloudPreview(QString text);

/// The entry of the regular file at \a path. None where it has no extension, cannot be read, or
/// holds no text: files are read as UTF-8, those with the extension "edit" or "quillory" as native
/// archives. However large the file is, a bounded part of it is read. Any thread.
std::optional<CloudEntry> cloudEntry(const QByteArray& path);

/// The part of \a name behind its last dot; empty where it has none, ends with it, or only begins
/// with one.
QByteArray extensionOf(const QByteArray& name);

} // namespace quillory
