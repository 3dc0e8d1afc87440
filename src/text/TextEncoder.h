#pragma once

#include "text/ByteLayout.h"
#include "text/TextSnapshot.h"

#include <QByteArray>
#include <functional>
#include <optional>

namespace quillory {

/// Takes the next bytes, which are gone after the call; false ends the work.
using ByteSink = std::function<bool(QByteArrayView)>;

/// Why a text could not be encoded.
struct EncodingFailure
{
    enum class Cause
    {
        unknownEncoding,
        unencodableCharacter,
        sinkRefused,
    };

    Cause cause = Cause::unknownEncoding;
    TextOffset offset = 0;  ///< of the character that does not fit
    char32_t character = 0; ///< it; an unpaired surrogate as it stands

    bool operator==(const EncodingFailure&) const = default;
};

/// Encodes \a text piece by piece to \a sink, in pieces of some 64 KB, the last one shorter.
/// Strict: a character that the encoding lacks ends the work and is never replaced by another.
/// Unpaired surrogates fit UTF-16 and non-lossy ASCII only. Nothing when all went well.
std::optional<EncodingFailure> encode(const TextSnapshot& text, StringEncoding encoding,
                                      ByteLayout layout, const ByteSink& sink);

/// All of \a text in the encoding's standard layout; nothing when a character does not fit.
std::optional<QByteArray> encoded(const TextSnapshot& text, StringEncoding encoding);

/// How many bytes encoding takes; nothing when a character does not fit. Needs no memory, but, for
/// most encodings, as much time as encoding does.
std::optional<ByteCount> encodedSize(const TextSnapshot& text, StringEncoding encoding,
                                     ByteLayout layout);

/// The first character of \a text that \a encoding lacks.
std::optional<EncodingFailure> findUnencodable(const TextSnapshot& text, StringEncoding encoding);

/// True when \a text, which was decoded from \a bytes, gives the very same bytes again. It does not
/// where an encoding has several ways to write a character (escape sequences, duplicates in East
/// Asian code pages). For encodings without such ways this is known without a look at the text;
/// otherwise the work is that of encoding, and may be done on any thread.
bool encodesBack(const TextSnapshot& text, StringEncoding encoding, ByteLayout layout,
                 QByteArrayView bytes);

} // namespace quillory
