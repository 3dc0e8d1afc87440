#pragma once

#include "text/TextSnapshot.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class QMimeData;

namespace quillory {

/// Text as another program offers it, not decoded yet where it comes in UTF-8. Making a text of it
/// takes long when it is long, and may be done on any thread.
struct PastedText
{
    QByteArray utf8;
    QString string; ///< where it is not offered in UTF-8

    qsizetype size() const { return utf8.size() + string.size(); }
    /// CR LF and CR become LF, the break that is typed: saving gives every break the document's
    /// form in any case, and what looks like one line break is one.
    TextSnapshot decoded() const;
};

/// Whether \a data can be inserted as text; rich text without a plain form counts.
bool offersText(const QMimeData& data);

/// Waits for the program that owns \a data.
PastedText pastedText(const QMimeData& data);

/// The text of \a data; what comes from this program as it was, without a copy.
TextSnapshot textOf(const QMimeData& data);

/// The paths of the files on this machine that \a data names.
QStringList localFiles(const QMimeData& data);

} // namespace quillory
