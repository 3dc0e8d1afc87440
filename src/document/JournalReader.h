#pragma once

#include "document/FileOps.h"
#include "document/JournalFile.h"

#include <functional>

namespace quillory {

/// Reads a journal of edits: checks every record, takes what there is up to the first one that is
/// damaged or missing, batch by batch, and makes the edits anew. Needs no more memory than the
/// largest record and the text.
class JournalReader
{
public:
    /// Reads up to so many bytes at an offset; answers how many, 0 at the end, less when that
    /// fails.
    using Bytes = std::function<qint64(char* target, qint64 size, qint64 offset)>;

    /// Checks all records.
    explicit JournalReader(Bytes bytes);
    /// Of an open file; both must outlive the reader.
    JournalReader(FileOps& ops, int descriptor);

    /// False when not even the beginning is there; nothing else makes sense then.
    bool isReadable() const { return m_isReadable; }
    const JournalStart& start() const { return m_start; }
    /// As it was last told.
    const JournalForm& form() const { return m_form; }
    /// Where the part that can be read ends.
    const JournalEnd& end() const { return m_end; }
    /// Something follows that part, or may: it cannot be read.
    bool isCut() const { return m_isCut; }

    struct Replay
    {
        TextSnapshot base; ///< before the first edit
        TextSnapshot text; ///< after the last one
    };
    /// Makes the edits to \a base, which is of no account where start().holdsText. Nothing when
    /// \a base turns out not to be the text that they were made to.
    std::optional<Replay> replay(const TextSnapshot& base) const;

    /// What the edits put in, each piece beginning a line: for when their base is lost. Typing goes
    /// on where it went on.
    TextSnapshot pieces() const;

private:
    /// Calls \a visit with the kind, the body and where it ends, for each record up to \a end,
    /// until it answers false.
    template<class Visit>
    bool forEachRecord(qint64 end, Visit&& visit) const;
    void check();

    Bytes m_bytes;
    JournalStart m_start;
    JournalForm m_form;
    JournalEnd m_end;
    qint64 m_firstBatchEnd = 0;
    bool m_isReadable = false;
    bool m_isCut = false;
};

} // namespace quillory
