#include "document/JournalWriter.h"

namespace quillory {

namespace {

/// What is written within a small part of a frame.
constexpr TextOffset shortLength = 1 << 19; ///< units
constexpr size_t fewEdits = 2000;

bool isShort(const JournalBatch& batch)
{
    return batch.edits.size() <= fewEdits && batch.length() <= shortLength;
}

} // namespace

JournalWriter::JournalWriter(FileOps& ops, RecoveryStore& store, const QString& id)
    : m_file(ops, store, id)
{}

JournalWriter::JournalWriter(FileOps& ops, RecoveryStore& store, const QString& id, FileHandle file,
                             JournalEnd end)
    : m_file(ops, store, id, std::move(file), end)
{}

JournalWriter::Rest JournalWriter::add(JournalBatch batch, int& error)
{
    const bool atOnce = isShort(batch);
    bool isFirst = false;
    {
        const std::lock_guard lock(m_queueMutex);
        isFirst = m_queue.empty();
        m_queue.push_back(std::move(batch));
    }
    if (!atOnce || !isFirst)
        return Rest::Some;
    const std::unique_lock lock(m_fileMutex, std::try_to_lock);
    return lock ? writeQueue(error) : Rest::Some;
}

JournalWriter::Rest JournalWriter::writeRest(int& error)
{
    Rest rest = Rest::None;
    {
        const std::lock_guard lock(m_fileMutex);
        rest = writeQueue(error);
    }
    // Who gave it up meanwhile has not waited for the file.
    if (m_abandoned)
        abandon();
    return rest;
}

JournalWriter::Rest JournalWriter::writeQueue(int& error)
{
    for (;;) {
        JournalBatch* next = nullptr;
        {
            const std::lock_guard lock(m_queueMutex);
            if (m_queue.empty())
                return Rest::None;
            next = &m_queue.front(); // adding moves no other
        }
        const FileStatus done = m_file.append(*next, m_abandoned);
        if (m_abandoned)
            return Rest::None;
        if (!done) {
            error = done.error();
            return Rest::Refused;
        }
        JournalBatch written; // freed when nobody waits for it
        const std::lock_guard lock(m_queueMutex);
        written = std::move(m_queue.front());
        m_queue.pop_front();
    }
}

FileResult<bool> JournalWriter::sync()
{
    {
        const std::lock_guard lock(m_fileMutex);
        if (!m_file.isMade())
            return false;
    }
    const FileStatus done = m_file.sync(); // which takes long, and must keep nobody from writing
    return done ? FileResult<bool>(true) : FileResult<bool>::failed(done.error());
}

void JournalWriter::abandon()
{
    m_abandoned = true;
    const std::unique_lock lock(m_fileMutex, std::try_to_lock);
    if (lock)
        m_file.remove();
}

} // namespace quillory
