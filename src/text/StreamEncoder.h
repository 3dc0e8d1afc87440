#pragma once

#include "text/ByteLayout.h"
#include "text/ByteTable.h"
#include "text/Converter.h"

#include <optional>

namespace quillory {

/// Encodes text that comes in pieces, in an encoding's standard layout. Strict, as encode() is.
class StreamEncoder
{
public:
    explicit StreamEncoder(const EncodingInfo& info);

    /// Begins a text; answers the byte-order mark that leads.
    QByteArrayView begin();
    /// Encodes as much of \a units as there is \a room (at least 16) for. Not valid: the character
    /// behind those read has no place in the encoding.
    Converter::Progress encode(QStringView units, std::span<char> room);
    /// Ends the text: what brings back the state in which texts begin.
    Converter::Progress finish(std::span<char> room);

private:
    StringEncoding m_encoding;
    const ByteTable* m_table = nullptr;
    std::optional<Converter> m_converter; ///< where there is no table, nor a code of our own
};

} // namespace quillory
