#include "document/EditJournal.h"

#include "document/FileError.h"
#include "document/FileTransfer.h"
#include "document/RecoveryStore.h"
#include "foundation/Background.h"
#include "text/TextStorage.h"

#include <QFile>
#include <QUuid>
#include <fcntl.h>

namespace quillory {

namespace {

using namespace std::chrono_literals;
using Rest = JournalWriter::Rest;

constexpr auto syncDelay = 1500ms; ///< leaves half a second for the device
constexpr auto retryDelay = 2s;
/// A base so long stands in the journal itself; writing it takes about a millisecond.
constexpr TextOffset longestHeldBase = 1 << 19;

} // namespace

EditJournal::EditJournal(TextStorage& storage, FileOps& ops, RecoveryStore& store, FormSource form)
    : m_storage(storage), m_ops(ops), m_store(store), m_form(std::move(form))
{
    m_syncTimer.setSingleShot(true);
    m_syncTimer.setInterval(syncDelay);
    m_retryTimer.setSingleShot(true);
    m_retryTimer.setInterval(retryDelay);
    connect(&m_storage, &TextStorage::edited, this, &EditJournal::takeEdit);
    connect(&m_storage, &TextStorage::editingEnded, this, &EditJournal::endBatch);
    connect(&m_syncTimer, &QTimer::timeout, this, &EditJournal::syncAside);
    connect(&m_retryTimer, &QTimer::timeout, this, &EditJournal::writeAside);
}

EditJournal::~EditJournal()
{
    drop();
}

QString EditJournal::id() const
{
    return m_writer ? m_writer->id() : QString();
}

// What the document does

EditJournal::NewBase::NewBase(EditJournal& journal) : m_journal(journal)
{
    ++m_journal.m_silent;
}

EditJournal::NewBase::~NewBase()
{
    if (--m_journal.m_silent > 0)
        return;
    m_journal.discard();
    const JournalForm form = m_journal.m_form();
    m_journal.setBase(m_journal.m_storage.snapshot(), !form.path.isEmpty());
}

void EditJournal::setBase(const TextSnapshot& text, bool isInFile)
{
    m_base = text;
    m_isBaseInFile = isInFile;
    m_length = text.length();
    m_lastForm = m_form();
}

void EditJournal::takeEdit(const TextChange& change)
{
    if (m_silent > 0 || m_isLeft)
        return;
    m_batch.edits.push_back({change, m_storage.snapshot()});
}

void EditJournal::endBatch()
{
    JournalBatch batch = std::exchange(m_batch, {});
    if (batch.edits.empty())
        return;
    TextOffset length = m_length;
    for (const JournalBatch::Edit& edit : batch.edits)
        length += edit.change.delta();
    // Edits made by who was told of an edit may have been told of before it.
    if (length != m_storage.length())
        batch.edits = {{{{0, m_length}, m_storage.length()}, m_storage.snapshot()}};
    m_length = m_storage.length();
    if (m_isSaving)
        m_sinceSaving.insert(m_sinceSaving.end(), batch.edits.begin(), batch.edits.end());
    begin();
    write(std::move(batch));
}

void EditJournal::noteForm(bool isEdited)
{
    if (m_silent > 0 || m_isLeft)
        return;
    const JournalForm form = m_form();
    if (form == m_lastForm)
        return;
    if (!m_writer && !isEdited) {
        m_lastForm = form;
        return;
    }
    begin();
    JournalBatch batch;
    batch.form = m_lastForm = form;
    write(std::move(batch));
}

void EditJournal::noteSaving()
{
    m_isSaving = true;
    m_sinceSaving.clear();
}

void EditJournal::noteNotSaved(bool isEdited)
{
    m_isSaving = false;
    m_sinceSaving.clear();
    noteForm(isEdited);
}

void EditJournal::noteSaved(const TextSnapshot& saved, bool readsBack)
{
    if (m_isLeft)
        return;
    const std::shared_ptr<JournalWriter> before = std::exchange(m_writer, nullptr);
    giveUp(std::exchange(m_replaced, nullptr));
    const std::vector<JournalBatch::Edit> since = std::exchange(m_sinceSaving, {});
    const bool knowsEdits = std::exchange(m_isSaving, false);
    const TextSnapshot now = m_storage.snapshot();
    m_retryTimer.stop();
    m_isRefused = m_isUnsynced = false;
    setBase(saved, readsBack);
    if (!saved.isSameTree(now)) {
        begin();
        JournalBatch batch;
        batch.edits = since;
        if (!knowsEdits || since.empty() || !since.back().text.isSameTree(now))
            batch.edits = {{{{0, saved.length()}, now.length()}, now}};
        m_length = now.length();
        write(std::move(batch));
    } else {
        tellState(0);
    }
    giveUp(before);
}

void EditJournal::giveUp(const std::shared_ptr<JournalWriter>& writer)
{
    if (!writer)
        return;
    writer->abandon();
    // A power cut is not to bring it back, with a file that is another.
    backgroundPool().start([&ops = m_ops, folder = QFile::encodeName(m_store.folder())] {
        (void)syncFolder(ops, folder);
    });
}

void EditJournal::keepText()
{
    if ((m_writer && m_holdsBase) || m_isLeft)
        return;
    std::shared_ptr<JournalWriter> before = std::exchange(m_writer, nullptr);
    open();
    m_holdsBase = true;
    m_base = TextSnapshot();
    m_lastForm = m_form();
    const TextSnapshot& text = m_storage.snapshot();
    m_length = text.length();
    // As an edit: what holds nothing but its base has nothing to bring back.
    JournalBatch batch;
    batch.start = JournalStart{m_lastForm, QDateTime::currentDateTimeUtc(), 0, true};
    batch.edits.push_back({{{0, 0}, text.length()}, text});
    write(std::move(batch));
    m_replaced = std::move(before);
}

void EditJournal::adopt(const QString& id, FileHandle file, JournalEnd end, bool holdsBase)
{
    discard();
    m_writer = std::make_shared<JournalWriter>(m_ops, m_store, id, std::move(file), end);
    m_holdsBase = holdsBase;
    m_length = m_storage.length();
    m_lastForm = m_form();
    m_base = TextSnapshot();
}

// Writing

void EditJournal::open()
{
    m_writer =
        std::make_shared<JournalWriter>(m_ops, m_store, QUuid::createUuid().toString(QUuid::Id128));
    Q_EMIT begun();
}

/// The first record, and the base where the journal is to hold it.
void EditJournal::begin()
{
    if (m_writer)
        return;
    open();
    m_holdsBase = !m_isBaseInFile || m_base.length() <= longestHeldBase;
    JournalBatch batch;
    batch.start =
        JournalStart{m_lastForm, QDateTime::currentDateTimeUtc(), m_base.length(), m_holdsBase};
    if (m_holdsBase && !m_base.isEmpty())
        batch.edits.push_back({{{0, 0}, m_base.length()}, m_base});
    m_base = TextSnapshot();
    write(std::move(batch));
    const JournalForm form = m_form();
    if (form == m_lastForm)
        return;
    JournalBatch other;
    other.form = m_lastForm = form;
    write(std::move(other));
}

void EditJournal::write(JournalBatch batch)
{
    int error = 0;
    if (m_replaced)
        (void)m_replaced->add(batch, error);
    const Rest rest = m_writer->add(std::move(batch), error);
    if (!m_syncTimer.isActive())
        m_syncTimer.start();
    // What the disk refused is tried again now and then, and not at each key press.
    if (rest == Rest::Some && !m_retryTimer.isActive())
        writeAside();
    else if (rest != Rest::Some)
        take(rest, error);
}

void EditJournal::take(Rest rest, int error)
{
    m_isRefused = rest == Rest::Refused;
    if (m_isRefused)
        m_retryTimer.start();
    tellState(error);
}

/// \a error is the last one, if there was any.
void EditJournal::tellState(int error)
{
    const bool hasFailed = m_isRefused || m_isUnsynced;
    if (std::exchange(m_hasFailed, hasFailed) == hasFailed)
        return;
    if (!hasFailed) {
        Q_EMIT recovered();
        return;
    }
    FileError failure;
    failure.code = error;
    failure.step = FileStep::StoreRecovery;
    failure.path = QFile::encodeName(m_store.folder());
    Q_EMIT failed(failure.cause());
}

void EditJournal::writeAside()
{
    m_hasMoreToWrite = m_isWritingAside;
    if (m_isWritingAside || !m_writer)
        return;
    m_isWritingAside = true;
    struct Answer
    {
        Rest rest = Rest::None;
        int error = 0;
    };
    runInBackground(
        this,
        [writer = m_writer] {
            const WaitingInPool waiting;
            Answer answer;
            answer.rest = writer->writeRest(answer.error);
            return answer;
        },
        [this, writer = std::weak_ptr(m_writer)](const Answer& answer) {
            m_isWritingAside = false;
            if (writer.lock() == m_writer) {
                take(answer.rest, answer.error);
                // There may be more to sync than there was when that last began.
                if (!m_syncTimer.isActive())
                    m_syncTimer.start();
            }
            if (m_hasMoreToWrite && !m_retryTimer.isActive())
                writeAside();
        });
}

void EditJournal::syncAside()
{
    if (!m_writer)
        return;
    if (m_isSyncing) {
        m_syncTimer.start();
        return;
    }
    m_isSyncing = true;
    runInBackground(
        this,
        [writer = m_writer] {
            const WaitingInPool waiting;
            return writer->sync();
        },
        [this, writer = std::weak_ptr(m_writer)](const FileResult<bool>& synced) {
            m_isSyncing = false;
            if (writer.lock() != m_writer)
                return;
            m_isUnsynced = !synced;
            if (m_isUnsynced)
                m_syncTimer.start();
            else if (*synced)
                giveUp(std::exchange(m_replaced, nullptr));
            tellState(synced.error());
        });
}

/// Whether the file is still the one that the edits are made to.
bool EditJournal::isBaseInFile() const
{
    const JournalForm form = m_form();
    const auto file = FileHandle::open(m_ops, QFile::encodeName(form.path), O_RDONLY | O_NONBLOCK);
    if (!file || !form.identity)
        return false;
    const auto status = m_ops.status(file->descriptor());
    return status && form.identity->matches(*status);
}

bool EditJournal::flush()
{
    if (!m_writer)
        return true;
    // That may not have been told yet, or never is: of a file that lies on another machine.
    if (!m_holdsBase && !isBaseInFile())
        keepText();
    int error = 0;
    const Rest rest = m_writer->writeRest(error);
    if (rest == Rest::None) {
        error = m_writer->sync().error();
        m_isUnsynced = error != 0;
        if (!m_isUnsynced)
            giveUp(std::exchange(m_replaced, nullptr));
    }
    take(rest, error);
    return error == 0;
}

void EditJournal::drop()
{
    m_syncTimer.stop();
    m_retryTimer.stop();
    m_batch = {};
    m_isRefused = m_isUnsynced = false;
    if (m_isLeft)
        return;
    for (std::shared_ptr<JournalWriter>* writer : {&m_writer, &m_replaced}) {
        if (*writer)
            std::exchange(*writer, nullptr)->abandon();
    }
}

void EditJournal::discard()
{
    if (m_isLeft)
        return;
    drop();
    tellState(0);
    setBase(m_storage.snapshot(), false);
}

bool EditJournal::leave()
{
    const bool isKept = flush();
    m_isLeft = true;
    m_syncTimer.stop();
    m_retryTimer.stop();
    return isKept;
}

} // namespace quillory
