#include "app/Recovery.h"

#include "app/DocumentController.h"
#include "app/RecoveryMessage.h"
#include "document/Document.h"
#include "foundation/Background.h"

namespace quillory {

namespace {

using State = RecoveredDocument::State;

/// Calls \a then when as many calls have come as there are parts.
std::function<void()> afterAll(qsizetype parts, const std::function<void()>& then)
{
    const auto left = std::make_shared<qsizetype>(parts);
    return [left, then] {
        if (--*left == 0 && then)
            then();
    };
}

} // namespace

Recovery::Recovery(DocumentController& controller, const DocumentEnvironment& environment)
    : m_controller(controller), m_environment(environment)
{}

void Recovery::recover(const QString& id, const std::function<void(DocumentWindow*)>& then,
                       bool isExpected)
{
    m_asked.insert(id);
    runInBackground(
        this,
        [id, &environment = m_environment] {
            return recoverJournal(environment.fileOps, environment.recovery, id,
                                  environment.versions);
        },
        [this, id, then, isExpected](const RecoveredDocument& recovered) {
            open(id, recovered, then, isExpected);
        });
}

void Recovery::recoverAll(const std::function<void()>& then)
{
    runInBackground(
        this,
        [&environment = m_environment] {
            return recoverableTexts(environment.fileOps, environment.recovery);
        },
        [this, then](const RecoverableTexts& found) { recoverFound(found, then); });
}

void Recovery::recoverFound(const RecoverableTexts& found, const std::function<void()>& then)
{
    const auto done = afterAll(found.journals.size() + found.records.size() + 1, then);
    for (const QString& id : found.journals) {
        if (m_asked.contains(id))
            done();
        else
            recover(id, [done](DocumentWindow*) { done(); });
    }
    for (const RecoveryRecord& record : found.records) {
        runInBackground(
            this,
            [record, &environment = m_environment] {
                return recoverRecord(environment.recovery, record);
            },
            [this, record, done](const RecoveredDocument& recovered) {
                openRecord(record, recovered);
                done();
            });
    }
    done();
}

void Recovery::open(const QString& id, const RecoveredDocument& recovered,
                    const std::function<void(DocumentWindow*)>& then, bool isExpected)
{
    using File = RecoveredDocument::File;
    DocumentWindow* window = nullptr;
    if (!recovered.keptAside.isEmpty())
        tellDamaged(recovered);
    if (recovered.state != State::Nothing) {
        window = &show(recovered);
        if (recovered.state == State::Text)
            window->journal().adopt(id, std::move(*recovered.journal), recovered.end,
                                    recovered.holdsBase);
        const bool isAsLeft = recovered.state == State::Text && !recovered.isCut &&
                              recovered.file != File::Changed && recovered.file != File::Gone;
        if (!isExpected || !isAsLeft)
            showRecoveryMessage(*window, recovered, id);
    }
    if (then)
        then(window);
}

/// In whatever window there is, or in the first one that comes.
void Recovery::tellDamaged(const RecoveredDocument& damaged)
{
    m_damaged.append(damaged);
    const std::vector<DocumentWindow*>& windows = m_controller.windows();
    if (!windows.empty())
        showDamagedJournals(*windows.front(), m_damaged);
    else if (m_damaged.size() == 1)
        connect(
            &m_controller, &DocumentController::windowOpened, this,
            [this](DocumentWindow* window) { showDamagedJournals(*window, m_damaged); },
            Qt::SingleShotConnection);
}

DocumentWindow& Recovery::show(const RecoveredDocument& recovered)
{
    m_isShowing = true;
    DocumentWindow& window = m_controller.restore(recovered.document, recovered.untitledNumber);
    m_isShowing = false;
    Document& document = window.document();
    if (!recovered.hasIdentity)
        document.acceptFileOnDisk();
    document.takeRecoveryRecord(recovered.recoveryRecord);
    const QString& definition = recovered.document.record.definitionTitle;
    if (!definition.isEmpty() && document.record().definitionTitle != definition)
        document.setDefinitionWithTitle(definition);
    if (recovered.state == State::Text)
        document.undoManager().markDirty();
    return window;
}

/// The record goes with the document, once that is saved or given up. What a file held before it
/// was overwritten is a document of its own.
void Recovery::openRecord(const RecoveryRecord& record, const RecoveredDocument& recovered)
{
    if (recovered.state == State::Nothing)
        return;
    RecoveredDocument document = recovered;
    if (record.isPrevious)
        document.recoveryRecord.clear();
    DocumentWindow& window = show(document);
    window.journal().keepText();
    showRecoveryMessage(window, document, {});
    if (record.isPrevious && window.journal().flush())
        (void)m_environment.recovery.removeRecord(record.name);
}

} // namespace quillory
