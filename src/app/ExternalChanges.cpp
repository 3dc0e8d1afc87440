#include "app/ExternalChanges.h"

#include "app/DocumentWindow.h"
#include "app/FileComparison.h"
#include "app/LoadFlow.h"
#include "app/MessageArea.h"
#include "app/RereadFlow.h"
#include "app/SaveFlow.h"
#include "document/Document.h"

namespace quillory {

namespace {

using Subject = MessageArea::Subject;

constexpr int whileBusy = 200; // milliseconds between looks at whether the window is still busy

} // namespace

ExternalChanges::ExternalChanges(DocumentWindow& window) : QObject(&window), m_window(window)
{
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &ExternalChanges::takeChange);
    connect(&m_watch, &FileWatch::changed, this, &ExternalChanges::takeChange);
    connect(&m_watch, &FileWatch::renamed, this, &ExternalChanges::followName);
    connect(&m_watch, &FileWatch::gone, this, &ExternalChanges::tellGone);
    connect(&m_watch, &FileWatch::restored, this, &ExternalChanges::takeRestored);

    connect(&window, &DocumentWindow::firstPainted, this, &ExternalChanges::watchFile);
    connect(&window.saving(), &SaveFlow::written, this, &ExternalChanges::watchFile);
    connect(&window.saving(), &SaveFlow::failed, this, [this](const SaveResult& result) {
        // That message says the same, and more.
        if (result.problem == SaveProblem::ChangedByOther)
            m_window.messages().clear(Subject::FileOnDisk);
    });
    connect(&window.loading(), &LoadFlow::loaded, this, &ExternalChanges::watchFile);
    connect(&window.document(), &Document::recordChanged, this, [this] {
        if (!m_watched.isEmpty() && m_watched != m_window.document().path())
            watchFile();
    });
    connect(&window.rereading(), &RereadFlow::reread, this, [this] {
        m_lastReading = m_reading.isValid() ? m_reading.elapsed() : 0;
        watchFile();
    });
}

void ExternalChanges::watchFile()
{
    const Document& document = m_window.document();
    if (document.isLoading())
        return;
    m_later.stop();
    m_unedited.reset();
    m_watched = document.path();
    m_watch.watch(document.fileIdentity() ? document.path() : QString(),
                  document.fileIdentity().value_or(FileIdentity()));
}

void ExternalChanges::takeChange()
{
    const Document& document = m_window.document();
    if (m_window.isBusy()) {
        m_later.start(whileBusy);
        return;
    }
    if (document.isDocumentEdited() || !m_window.document().textView().isEditable()) {
        tellChanged();
        return;
    }
    // A large file that grows all the time leaves time for something else.
    const qint64 rest = m_reading.isValid() ? 3 * m_lastReading - m_reading.elapsed() : 0;
    if (rest > 0) {
        m_later.start(int(rest));
        return;
    }
    m_reading.start();
    m_window.rereading().reload();
}

void ExternalChanges::followName(const QString& path)
{
    m_window.document().followRename(path);
}

void ExternalChanges::tellChanged()
{
    if (m_window.document().isDocumentEdited())
        m_window.journal().keepText();
    const auto reload = [this] { m_window.rereading().reload(); };
    const auto keepMine = [this] {
        m_window.document().acceptFileOnDisk();
        m_window.messages().clear(Subject::FileOnDisk);
    };
    const auto compare = [=, this] {
        compareWithFile(
            m_window,
            {{tr("&Reload"), tr("Take the file’s text and drop the changes here"), reload},
             {tr("&Keep Mine"), tr("Save over the file the next time"), keepMine}});
    };
    m_window.messages().show(
        Subject::FileOnDisk,
        {Message::Kind::Warning,
         tr("Another program changed “%1”. The text here has changes that are not in the file.")
             .arg(m_window.document().displayName()),
         {{tr("&Reload"), reload}, {tr("&Compare"), compare}, {tr("&Keep Mine"), keepMine}}});
}

void ExternalChanges::tellGone()
{
    Document& document = m_window.document();
    if (!document.isDocumentEdited())
        m_unedited = document.completeString();
    // Nothing on disk holds the text any more.
    document.undoManager().markDirty();
    if (!document.isUndecoded())
        m_window.journal().keepText();
    m_window.messages().show(
        Subject::FileOnDisk,
        {Message::Kind::Warning,
         tr("“%1” is not there any more: another program deleted it or moved it elsewhere. Save to "
            "keep the text.")
             .arg(document.displayName()),
         {{tr("&Save"), [this] { m_window.saving().save(); }},
          {tr("Save &Elsewhere…"), [this] { m_window.saving().saveAs(); }}}});
}

void ExternalChanges::takeRestored()
{
    m_window.messages().clear(Subject::FileOnDisk);
    Document& document = m_window.document();
    const std::optional<TextSnapshot> unedited = std::exchange(m_unedited, std::nullopt);
    if (!unedited || !unedited->isSameTree(document.completeString()))
        return;
    document.undoManager().markClean();
    if (document.isDocumentEdited())
        return;
    const EditJournal::NewBase newBase(m_window.journal());
}

} // namespace quillory
