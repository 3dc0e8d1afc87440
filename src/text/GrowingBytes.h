#pragma once

#include "text/ByteBuffer.h"

namespace quillory {

/// A buffer that is filled from its beginning on. What is filled does not change any more, so it
/// can be shared while the rest is still to come.
class GrowingBytes
{
public:
    /// Room for \a room bytes, of which those never filled take no memory. Throws std::bad_alloc.
    explicit GrowingBytes(ByteCount room)
        : m_bytes(ByteBuffer::allocate(room)), m_room(room.value())
    {}

    /// Where the next bytes go; at most room() of them.
    char* end() { return m_bytes.m_memory->data + m_bytes.m_size; }
    ByteCount room() const { return ByteCount(m_room - m_bytes.m_size); }
    /// \a count bytes were written to end().
    void grow(qsizetype count) { m_bytes.m_size += count; }

    const ByteBuffer& filled() const { return m_bytes; }

private:
    ByteBuffer m_bytes;
    qsizetype m_room;
};

} // namespace quillory
