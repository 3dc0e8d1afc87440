#pragma once

#include "document/JournalForm.h"
#include "document/JournalWriter.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

namespace quillory {

class TextStorage;

/// Keeps the edits of one document where a crash of the program or of the machine leaves them: each
/// is written to a file before the next key press is seen, and brought to the device at most two
/// seconds later, on another thread. The file costs the size of the edits; it begins with the first
/// one, and goes when they were saved or given up.
///
/// The edits are those to a base: the text of the document's file, or a text that the journal holds
/// itself. It does so where that is short, so that the edits can be put together whatever became of
/// the file, and where there is no such file. JournalReader reads what this writes.
class EditJournal : public QObject
{
    Q_OBJECT

public:
    using FormSource = std::function<JournalForm()>;

    /// What the journals of all documents share, and how the document is now.
    EditJournal(TextStorage& storage, FileOps& ops, RecoveryStore& store, FormSource form);
    /// As discard(), unless leave() was called.
    ~EditJournal() override;

    /// Of the journal, by which the next start of the program finds it; empty while there is
    /// nothing to find.
    QString id() const;

    /// While it lives, the text becomes another without being edited; afterwards it is the base.
    class NewBase
    {
    public:
        explicit NewBase(EditJournal& journal);
        ~NewBase();
        Q_DISABLE_COPY_MOVE(NewBase)

    private:
        EditJournal& m_journal;
    };

    /// The document may have got another form; \a isEdited tells whether it has to be saved.
    void noteForm(bool isEdited);
    /// The text as it is now is about to be saved; until one of the next two the document may be
    /// edited on.
    void noteSaving();
    void noteNotSaved(bool isEdited);
    /// \a saved is safe in the document's file; \a readsBack tells that reading that gives the very
    /// same text.
    void noteSaved(const TextSnapshot& saved, bool readsBack);

    /// Puts the text as it is now into a journal, as a whole: nothing else holds it, or the file
    /// that the edits were made to is not the same any more. A journal that cannot do without that
    /// file is kept until the new one is on the device.
    void keepText();
    /// Goes on writing a journal in which the text as it is now ended at \a end. \a file is it,
    /// locked; \a holdsBase tells that it can do without the document's file.
    void adopt(const QString& id, FileHandle file, JournalEnd end, bool holdsBase);

    /// Waits until all that is needed to put the text together is on the device; false when the
    /// disk refused.
    bool flush();
    /// Drops the journal: the edits are saved, or given up. The next edit begins another.
    void discard();
    /// The same as flush(), and the journal stays for the next start of the program; nothing that
    /// is edited from now on is kept.
    bool leave();
    bool isLeft() const { return m_isLeft; }

Q_SIGNALS:
    /// There is a journal now, or another one; see id().
    void begun();
    /// What was edited is not safe: \a cause says why, in words that can follow a colon.
    void failed(const QString& cause);
    /// It is again.
    void recovered();

private:
    void takeEdit(const TextChange& change);
    void endBatch();
    void begin();
    void open();
    bool isBaseInFile() const;
    void drop();
    void giveUp(const std::shared_ptr<JournalWriter>& writer);
    void tellState(int error);
    void setBase(const TextSnapshot& text, bool isInFile);
    void write(JournalBatch batch);
    void writeAside();
    void take(JournalWriter::Rest rest, int error);
    void syncAside();

    TextStorage& m_storage;
    FileOps& m_ops;
    RecoveryStore& m_store;
    FormSource m_form;
    std::shared_ptr<JournalWriter> m_writer; ///< null while nothing was edited
    /// In the place of which that is, once it is on the device; mostly null.
    std::shared_ptr<JournalWriter> m_replaced;
    bool m_holdsBase = false; ///< the journal does, and needs no file
    JournalForm m_lastForm;   ///< as the journal tells it, or will begin with
    TextSnapshot m_base;      ///< while nothing was edited
    bool m_isBaseInFile = false;
    JournalBatch m_batch; ///< that is being edited
    std::vector<JournalBatch::Edit> m_sinceSaving;
    bool m_isSaving = false;
    TextOffset m_length = 0; ///< of the text as the journal knows it
    int m_silent = 0;
    bool m_isWritingAside = false;
    bool m_hasMoreToWrite = false; ///< since that began
    bool m_isSyncing = false;
    bool m_isRefused = false;  ///< by the disk, the last time something was written
    bool m_isUnsynced = false; ///< the device did not confirm
    bool m_hasFailed = false;  ///< and that was told
    bool m_isLeft = false;
    QTimer m_syncTimer;
    QTimer m_retryTimer;
};

} // namespace quillory
