#pragma once

#include "document/JournalFile.h"

#include <deque>
#include <mutex>

namespace quillory {

/// Writes batches to a journal in the order in which they were given: short ones at once, on the
/// thread that gives them, unless others are still to be written; the rest on a thread of the pool.
class JournalWriter
{
public:
    JournalWriter(FileOps& ops, RecoveryStore& store, const QString& id);
    JournalWriter(FileOps& ops, RecoveryStore& store, const QString& id, FileHandle file,
                  JournalEnd end);

    const QString& id() const { return m_file.id(); }

    /// How much waits to be written.
    enum class Rest
    {
        None,
        Some,   ///< writeRest() is to be called, on another thread
        Refused ///< the same, but not soon: the disk refused
    };

    /// Takes \a batch over.
    Rest add(JournalBatch batch, int& error);
    /// Writes what there is. May be called on any thread.
    Rest writeRest(int& error);
    /// Brings what was written to the device; answers whether that was anything.
    FileResult<bool> sync();
    /// From now on nothing is written, and nothing is left once who writes has seen it.
    void abandon();

private:
    Rest writeQueue(int& error);

    std::mutex m_queueMutex;
    std::deque<JournalBatch> m_queue;
    std::mutex m_fileMutex; ///< held while the file is written; before the other one
    JournalFile m_file;
    std::atomic_bool m_abandoned = false;
};

} // namespace quillory
