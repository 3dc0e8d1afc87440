#pragma once

#include "text/ByteTable.h"
#include "text/Converter.h"

#include <optional>

namespace quillory {

/// Decodes bytes that come in pieces of any length, and goes on behind those that are no text.
class StreamDecoder
{
public:
    /// True for all encodings but non-lossy ASCII.
    static bool canDecode(const EncodingInfo& info);

    /// For an encoding that it can decode.
    explicit StreamDecoder(const EncodingInfo& info);

    /// Decodes as much of \a bytes as there is \a room (at least 8) for. Where it is not valid, \a
    /// read includes the bytes at fault. A byte-order mark where the encoding has one is left out.
    Converter::Progress decode(QByteArrayView bytes, std::span<char16_t> room);

    /// Ends the text. Not valid when it ended inside a character.
    Converter::Progress finish(std::span<char16_t> room);

    /// The next bytes begin another text.
    void reset();

    /// The table, for an encoding of one byte a character; otherwise null.
    const ByteTable* table() const { return m_table; }

private:
    const EncodingInfo& m_info;
    const ByteTable* m_table = nullptr;
    std::optional<Converter> m_converter; ///< without a table
    bool m_atStart = true;
};

/// As the table has it, but with ICU's converter where the table names none because the code is our
/// own: in pieces those of Unicode are ICU's.
const EncodingInfo& streamingInfo(const EncodingInfo& info);

} // namespace quillory
