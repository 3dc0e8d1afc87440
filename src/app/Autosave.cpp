#include "app/Autosave.h"

#include "app/DocumentWindow.h"
#include "app/LoadFlow.h"
#include "app/MessageArea.h"
#include "app/RereadFlow.h"
#include "app/SaveFlow.h"
#include "document/Document.h"
#include "document/VersionStore.h"
#include "foundation/UserDefaults.h"
#include "view/TextViewWidget.h"

#include <QEvent>

namespace quillory {

namespace {

using Subject = MessageArea::Subject;

/// A save takes at most this share of the time in which a text is edited.
constexpr qint64 ratio = 10;

} // namespace

Autosave::Autosave(DocumentWindow& window) : QObject(&window), m_window(window)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { save(); });
    connect(&window.document().textStorage(), &TextStorage::edited, this, &Autosave::schedule);
    connect(&window.saving(), &SaveFlow::written, this,
            [this](const SaveResult&, bool isAutomatic) {
                if (isAutomatic)
                    return;
                m_needsVersion = true;
                m_timer.stop();
            });
    connect(&window.rereading(), &RereadFlow::reread, this, [this] { m_needsVersion = true; });
    window.installEventFilter(this);
}

bool Autosave::eventFilter(QObject* watched, QEvent* event)
{
    // A window that is being destroyed is no document's any more.
    if (event->type() == QEvent::WindowDeactivate && m_timer.isActive() &&
        qobject_cast<DocumentWindow*>(watched)) {
        m_timer.stop();
        save();
    }
    return QObject::eventFilter(watched, event);
}

bool Autosave::isOn() const
{
    return Document::autosavesInPlace() &&
           m_window.environment().defaults.value(keys::autosaveInPlace);
}

void Autosave::schedule()
{
    if (isOn() && !m_window.document().path().isEmpty() && !m_window.document().isLoading())
        m_timer.start(pauseNow());
}

int Autosave::pauseNow() const
{
    if (m_failed)
        return afterFailure;
    return int(std::clamp<qint64>(ratio * m_lastSaving, pause, longestPause));
}

/// Saving changes nothing but what was typed, and needs no answer.
bool Autosave::maySave() const
{
    const Document& document = m_window.document();
    const DocumentRecord& record = document.record();
    const bool isTextOnly = !record.isPlistFile || record.plistKind == 0;
    return isOn() && !document.path().isEmpty() && document.isDocumentEdited() &&
           !document.isLoading() && !document.isUndecoded() && isTextOnly &&
           // Another program wrote the file, or edits were brought back, and the user has still to
           // say what to make of it.
           m_window.messages().text(Subject::Recovery).isEmpty() && document.fileIdentity() &&
           document.fileIdentity()->size <= VersionStore::largest &&
           m_window.messages().text(Subject::FileOnDisk).isEmpty() && document.hasFormOnDisk() &&
           !document.lineBreaksOnDisk().isMixed() && document.encodesBack();
}

void Autosave::save(const std::function<void()>& then)
{
    const bool isComposing = !m_window.view().textGeometry().preedit().text.isEmpty();
    if (!maySave()) {
        if (then)
            then();
        return;
    }
    if (!then &&
        (m_window.isBusy() || isComposing || !m_window.document().textView().isEditable())) {
        m_timer.start(pauseNow());
        return;
    }
    const bool isVersionOld =
        !m_sinceVersion.isValid() || m_sinceVersion.hasExpired(versionInterval);
    m_saving.start();
    m_window.saving().saveQuietly(m_needsVersion || isVersionOld,
                                  [this, then](const SaveResult& result) {
                                      take(result);
                                      if (then)
                                          then();
                                  });
}

void Autosave::take(const SaveResult& result)
{
    m_lastSaving = m_saving.elapsed();
    if (result.written) {
        if (!result.versionDigest.isEmpty())
            m_sinceVersion.start();
        m_needsVersion = false;
        if (std::exchange(m_failed, false))
            m_window.messages().clear(Subject::Autosaving);
        return;
    }
    const bool isDisk =
        result.problem == SaveProblem::Disk || result.problem == SaveProblem::NoVersion;
    if (isDisk && !std::exchange(m_failed, true))
        m_window.messages().show(Subject::Autosaving,
                                 {Message::Kind::Warning,
                                  result.message,
                                  {{tr("&Save"), [this] { m_window.saving().save(); }}}});
}

void Autosave::saveBefore(const std::function<void()>& then)
{
    m_timer.stop();
    save(then);
}

} // namespace quillory
