#include "text/ByteBuffer.h"

#include <new>
#include <sys/mman.h>

namespace quillory {

namespace {

constexpr qsizetype hugePage = qsizetype(2) << 20;

} // namespace

ByteBuffer::Memory::~Memory()
{
    if (mapped > 0)
        munmap(data, size_t(mapped));
}

ByteBuffer::ByteBuffer(QByteArray bytes) : m_memory(std::make_shared<Memory>())
{
    m_size = bytes.size();
    m_memory->array = std::move(bytes);
    m_memory->data = const_cast<char*>(m_memory->array.constData());
}

ByteBuffer ByteBuffer::allocate(ByteCount size)
{
    ByteBuffer buffer;
    buffer.m_memory = std::make_shared<Memory>();
    Memory& memory = *buffer.m_memory;
    if (size.value() < hugePage) {
        memory.array = QByteArray(size.value(), Qt::Uninitialized);
        memory.data = memory.array.data();
        return buffer;
    }
    void* address = mmap(nullptr, size_t(size.value()), PROT_READ | PROT_WRITE,
                         MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (address == MAP_FAILED)
        throw std::bad_alloc();
    madvise(address, size_t(size.value()),
            MADV_HUGEPAGE); // advice only: a refusal costs time alone
    memory.data = static_cast<char*>(address);
    memory.mapped = size.value();
    return buffer;
}

} // namespace quillory
