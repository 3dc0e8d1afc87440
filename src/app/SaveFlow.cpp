#include "app/SaveFlow.h"

#include "app/UserQuestions.h"
#include "document/Document.h"
#include "document/DocumentType.h"
#include "document/SafeFileWriter.h"
#include "foundation/Background.h"

#include <QDir>
#include <QFileInfo>
#include <QWidget>

namespace quillory {

SaveFlow::SaveFlow(Document& document, const DocumentEnvironment& environment,
                   UserQuestions& questions, QWidget& window)
    : m_document(document), m_environment(environment), m_questions(questions), m_window(window)
{}

void SaveFlow::save(const Then& then)
{
    const QString path = m_document.path();
    if (path.isEmpty()) {
        saveAs(then);
        return;
    }
    if (m_mayReplaceProtected == path ||
        !SafeFileWriter::isWriteProtected(m_environment.fileOps, path)) {
        enqueue({{}, {}, false, then});
        return;
    }
    m_questions.confirm(
        &m_window,
        {tr("“%1” is write-protected. Replace it all the same?").arg(m_document.displayName()),
         tr("The file keeps its protection. To leave it as it is, cancel and save elsewhere."),
         tr("Replace")},
        [this, path, then](bool agreed) {
            if (!agreed) {
                if (then)
                    then(false);
                return;
            }
            m_mayReplaceProtected = path;
            enqueue({{}, {}, false, then});
        });
}

void SaveFlow::saveAs(const Then& then)
{
    askForPlace(tr("Save As"), {}, false, then);
}

void SaveFlow::saveCopy(const QString& folder)
{
    askForPlace(tr("Save a Copy"), folder, true, {});
}

void SaveFlow::overwrite()
{
    m_document.acceptFileOnDisk();
    save();
}

void SaveFlow::saveQuietly(bool keepsVersion, const std::function<void(const SaveResult&)>& then)
{
    enqueue({{}, {}, false, {}, then, keepsVersion});
}

void SaveFlow::runBetweenSaves(const Work& work)
{
    enqueue({.work = work});
}

void SaveFlow::askForPlace(const QString& title, const QString& folder, bool isCopy,
                           const Then& then)
{
    const QString path = m_document.path();
    const QString name = path.isEmpty() ? m_document.displayName() + QStringLiteral(".txt") : path;
    // A path stays as it is.
    const QString suggestion = folder.isEmpty() ? QDir::current().filePath(name)
                                                : folder + u'/' + QFileInfo(name).fileName();
    m_questions.askForSavePath(
        &m_window, title, suggestion, [this, isCopy, then](const QString& chosen) {
            if (chosen.isEmpty()) {
                if (then)
                    then(false);
                return;
            }
            // The dialog has asked whether to replace what stands there.
            const bool same = chosen == m_document.path();
            if (same && !isCopy)
                m_document.acceptFileOnDisk();
            const QString type = same ? m_document.type() : DocumentType::ofNewFile(chosen);
            enqueue({chosen, type, isCopy, then});
        });
}

void SaveFlow::enqueue(const Request& request)
{
    m_waiting.push_back(request);
    if (!m_running)
        runNext();
}

void SaveFlow::runNext()
{
    if (m_waiting.empty()) {
        Q_EMIT savingChanged(false);
        for (const auto& then : std::exchange(m_whenIdle, {}))
            then();
        return;
    }
    const Request request = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_running = true;
    if (request.work) {
        request.work([this] {
            m_running = false;
            runNext();
        });
        return;
    }
    const bool isQuiet = bool(request.thenQuietly);
    if (!isQuiet)
        Q_EMIT savingChanged(true);
    SaveJob job = request.path.isEmpty() ? m_document.saveJob(m_document.path(), m_document.type())
                                         : m_document.saveJob(request.path, request.type);
    if (request.isCopy)
        job.recoveryRecord.clear();
    else
        m_document.journal().noteSaving();
    if (isQuiet) {
        job.isAutomatic = true;
        job.keepsText = false;
        if (!request.keepsVersion)
            job.versions = nullptr;
    }
    runInBackground(
        this,
        [job, &environment = m_environment] {
            return job.run(environment.fileOps, environment.recovery);
        },
        [this, request, job](const SaveResult& result) { finish(request, job, result); });
}

void SaveFlow::finish(const Request& request, const SaveJob& job, const SaveResult& result)
{
    m_running = false;
    if (!request.isCopy)
        m_document.finishSave(job, result);
    const bool isQuiet = bool(request.thenQuietly);
    if (result.written && !request.isCopy)
        Q_EMIT written(result, isQuiet);
    if (isQuiet)
        request.thenQuietly(result);
    else if (!result.written)
        Q_EMIT failed(result);
    else if (!request.isCopy)
        Q_EMIT saved(job.path);
    if (request.then)
        request.then(result.written);
    if (!m_running)
        runNext();
}

void SaveFlow::whenIdle(const std::function<void()>& then)
{
    if (m_running)
        m_whenIdle.push_back(then);
    else
        then();
}

} // namespace quillory
