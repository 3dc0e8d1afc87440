#pragma once

#include "text/TextRange.h"

#include <QByteArray>
#include <QByteArrayView>
#include <memory>

namespace quillory {

/// Bytes that no one changes any more, shared by whoever holds a copy of this object.
///
/// A large buffer lies in memory of its own that asks the kernel for huge pages: touching fresh
/// pages, not moving bytes, is what reading a big file costs.
class ByteBuffer
{
public:
    /// The empty buffer.
    ByteBuffer() = default;

    /// Shares the bytes of \a bytes.
    explicit ByteBuffer(QByteArray bytes);

    /// A buffer of \a size bytes that \a fill writes; what \a fill answers (at most \a size) is the
    /// number of bytes kept, a negative number gives the empty buffer.
    /// Throws std::bad_alloc when there is no memory.
    template<class Fill>
    static ByteBuffer filled(ByteCount size, Fill&& fill)
    {
        ByteBuffer buffer = allocate(size);
        const qsizetype used = size.value() > 0 ? fill(buffer.m_memory->data) : 0;
        buffer.m_size = std::clamp<qsizetype>(used, 0, size.value());
        return buffer;
    }

    ByteCount size() const { return ByteCount(m_size); }
    bool isEmpty() const { return m_size == 0; }
    const char* data() const { return m_memory ? m_memory->data : nullptr; }
    QByteArrayView view() const { return {data(), m_size}; }

private:
    friend class GrowingBytes;

    struct Memory
    {
        char* data = nullptr;
        qsizetype mapped = 0; ///< bytes to unmap; 0 when \a array holds them
        QByteArray array;

        Memory() = default;
        Memory(const Memory&) = delete;
        Memory& operator=(const Memory&) = delete;
        ~Memory();
    };

    static ByteBuffer allocate(ByteCount size);

    std::shared_ptr<Memory> m_memory;
    qsizetype m_size = 0;
};

} // namespace quillory
