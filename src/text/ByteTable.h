#pragma once

#include "text/EncodingTable.h"

#include <array>
#include <vector>

namespace quillory {

/// An encoding of one byte a character, as two look-up tables. All characters lie in the basic
/// plane, no two bytes stand for the same one, and bytes below 0x80 are ASCII.
class ByteTable
{
public:
    /// Stands for a byte that is no character.
    static constexpr char16_t undefined = 0xFFFF;

    /// The table of an encoding of the form byteTable; made at the first call and kept.
    static const ByteTable& of(const EncodingInfo& info);

    char16_t unitFor(uchar byte) const { return m_units[byte]; }

    /// The byte for \a unit; -1 where there is none.
    int byteFor(char16_t unit) const
    {
        const uchar byte = m_bytes[unit];
        return m_units[byte] == unit ? byte : -1;
    }

private:
    explicit ByteTable(const EncodingInfo& info);

    std::array<char16_t, 256> m_units;
    std::vector<uchar> m_bytes; ///< by code unit; what is not in m_units may be any byte
};

} // namespace quillory
