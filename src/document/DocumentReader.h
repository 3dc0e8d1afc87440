#pragma once

#include "document/DocumentRecord.h"
#include "document/FileBytes.h"
#include "document/FileIdentity.h"
#include "text/ByteLayout.h"
#include "text/EncodingDetector.h"
#include "text/LineBreaks.h"
#include "text/TextSnapshot.h"

#include <QString>
#include <atomic>

namespace quillory {

/// What reading a file found out.
struct ReadResult
{
    bool answer = false; ///< the document can be opened
    QString path;
    QString type; ///< one of DocumentType
    DocumentRecord record;

    /// What the record's bytes say in its encoding; nothing when they cannot be decoded.
    std::optional<TextSnapshot> text;
    ByteLayout layout; ///< how the bytes began: with a byte-order mark or not
    LineBreakFormat format = LineBreakFormat::none; ///< what the text's first CR tells
    LineBreakCounts lineBreaks;                     ///< as they stand in the file
    bool encodesBack = true;           ///< saving the text as it is gives the very same bytes
    bool hasEncodingAttribute = false; ///< the file names its encoding in an extended attribute
    FileIdentity identity;             ///< of the file as it was read

    QString message; ///< for the user, when the answer is no
};

/// Reads \a path as a document of kind \a type. Needs no document and no window, so that it can run
/// on any thread; \a cancelled, looked at now and then, ends it early with the answer no.
ReadResult readDocument(const QString& path, const QString& type,
                        const std::atomic_bool* cancelled = nullptr);

/// The same for what was read of \a path, or of something in its place.
ReadResult readDocument(const QString& path, const QString& type, const FileBytes& file);

/// The same for a text file of which \a file is what was read. \a known spares decoding.
ReadResult readText(const QString& path, const FileBytes& file, const KnownText& known = {});

/// Decodes the bytes of \a result again, in \a encoding; false, and nothing changed, when they do
/// not decode.
bool decodeAs(ReadResult& result, StringEncoding encoding);

} // namespace quillory
