#include "app/VersionsFlow.h"

#include "app/DocumentMessages.h"
#include "app/DocumentWindow.h"
#include "app/MessageArea.h"
#include "app/RereadFlow.h"
#include "app/SaveFlow.h"
#include "app/VersionsWindow.h"
#include "document/Document.h"
#include "document/FileError.h"
#include "document/VersionReading.h"
#include "editing/SelectionLines.h"
#include "foundation/Background.h"

#include <QFileInfo>
#include <QLocale>
#include <QMenu>

namespace quillory {

namespace {

constexpr qsizetype mostInMenu = 12;

} // namespace

VersionsFlow::VersionsFlow(DocumentWindow& window)
    : QObject(&window), m_window(window), m_path(window.document().path())
{
    connect(&window.saving(), &SaveFlow::written, this, &VersionsFlow::noteWritten);
    connect(&window.rereading(), &RereadFlow::reread, this, [this] { m_opened = m_saved = {}; });
    connect(&window.document(), &Document::renamed, this,
            [this](const QString& from, const QString& to) {
                m_path = to;
                VersionStore* store = m_window.environment().versions;
                if (!store || from.isEmpty())
                    return;
                runInBackground(
                    this, [=] { return store->followRename(from, to); }, [](const FileStatus&) {});
            });
}

void VersionsFlow::Milestone::noteWritten(const SaveResult& result)
{
    if (std::exchange(isInFile, false))
        digest = result.versionDigest;
}

void VersionsFlow::noteWritten(const SaveResult& result, bool isAutomatic)
{
    // What is saved elsewhere is as if it had been opened there.
    const QString path = m_window.document().path();
    if (std::exchange(m_path, path) != path) {
        m_opened = m_saved = {};
        return;
    }
    // A save by command that was to keep no version wrote what was there.
    if (isAutomatic || result.isVersionLost || !result.versionDigest.isEmpty())
        m_opened.noteWritten(result);
    if (isAutomatic)
        m_saved.noteWritten(result);
    else
        m_saved = {};
}

QString VersionsFlow::timeOf(const FileVersion& version)
{
    const QDateTime time = version.time.toLocalTime();
    const QLocale locale;
    const QString clock = time.toString(QStringLiteral("HH:mm:ss"));
    const qint64 days = time.date().daysTo(QDate::currentDate());
    if (days == 0)
        return tr("Today, %1").arg(clock);
    if (days == 1)
        return tr("Yesterday, %1").arg(clock);
    return tr("%1, %2").arg(locale.toString(time.date(), QLocale::ShortFormat), clock);
}

void VersionsFlow::list(QObject* context, const std::function<void(const Versions&)>& then)
{
    VersionStore* store = m_window.environment().versions;
    const QString path = m_window.document().path();
    if (!store || path.isEmpty()) {
        then({});
        return;
    }
    runInBackground(
        context, [=] { return store->versions(path); },
        [this, then](const FileResult<Versions>& versions) {
            if (!versions)
                complain(tr("The versions of “%1” could not be looked up: %2.")
                             .arg(m_window.document().displayName(),
                                  FileError{versions.error(), FileStep::Open, {}}.cause()));
            then(*versions);
        });
}

void VersionsFlow::fillMenu(QMenu& menu)
{
    const auto add = [&](const QString& text, bool isEnabled, auto act) {
        QAction* action = menu.addAction(text);
        action->setEnabled(isEnabled);
        connect(action, &QAction::triggered, this, act);
    };
    add(tr("Last &Saved"), m_saved.isThere(), [this] { revertToLastSaved(); });
    add(tr("Last &Opened"), m_opened.isThere(), [this] { revertToLastOpened(); });
    menu.addSeparator();
    QAction* looking = menu.addAction(tr("Looking for versions…"));
    looking->setEnabled(false);
    menu.addSeparator();
    add(tr("&Browse All Versions…"), true, [this] { browse(); });
    list(looking, [this, looking, &menu](const Versions& versions) {
        if (versions.isEmpty()) {
            looking->setText(tr("No versions yet"));
            return;
        }
        QList<QAction*> actions;
        for (const FileVersion& version : versions.first(std::min(mostInMenu, versions.size()))) {
            auto* action = new QAction(timeOf(version), &menu);
            connect(action, &QAction::triggered, this, [this, version] { restore(version); });
            actions.append(action);
        }
        menu.insertActions(looking, actions);
        menu.removeAction(looking);
    });
}

void VersionsFlow::browse()
{
    if (browser()) {
        browser()->raise();
        browser()->activateWindow();
        return;
    }
    list(this, [this](const Versions& versions) {
        auto* opened = new VersionsWindow(m_window, *this, versions);
        m_browser = opened;
        opened->show();
    });
}

VersionsWindow* VersionsFlow::browser() const
{
    return static_cast<VersionsWindow*>(m_browser.data());
}

void VersionsFlow::revertToLastSaved()
{
    if (m_saved.isInFile)
        m_window.rereading().reload();
    else
        restoreDigest(m_saved.digest);
}

void VersionsFlow::revertToLastOpened()
{
    if (m_opened.isInFile)
        m_window.rereading().reload();
    else
        restoreDigest(m_opened.digest);
}

void VersionsFlow::restoreDigest(const QByteArray& digest)
{
    list(this, [this, digest](const Versions& versions) {
        for (const FileVersion& version : versions) {
            if (version.digest == digest) {
                restore(version);
                return;
            }
        }
        complain(tr("That version of “%1” is not kept any more.")
                     .arg(m_window.document().displayName()));
    });
}

void VersionsFlow::restore(const FileVersion& version)
{
    read(version, [this](const ReadResult* result) {
        if (result)
            put(*result->text);
    });
}

void VersionsFlow::read(const FileVersion& version,
                        const std::function<void(const ReadResult*)>& then,
                        const std::shared_ptr<std::atomic_bool>& cancelled)
{
    runInBackground(
        this,
        [store = m_window.environment().versions, version, type = m_window.document().type(),
         cancelled] { return readVersion(*store, version, type, cancelled.get()); },
        [this, version, then, cancelled](const ReadResult& result) {
            if (cancelled && *cancelled)
                return;
            if (!result.answer || !result.text) {
                complain(tr("The version of %1 could not be read; it is left out.")
                             .arg(timeOf(version)));
                then(nullptr);
            } else {
                then(&result);
            }
        });
}

void VersionsFlow::put(const TextSnapshot& text)
{
    Document& document = m_window.document();
    QPTextView& editor = document.textView();
    if (!editor.isEditable()) {
        Q_EMIT editor.beep();
        return;
    }
    const TextSnapshot before = document.completeString();
    if (before == text)
        return;
    UndoManager& undo = document.undoManager();
    const std::vector<Selection> selections = editor.selections();
    undo.beginUndoGrouping(selections);
    undo.replaceCharactersInRange(before.range(), text);
    editor.setSelections(onSameLines(selections, before, text), selections.size() - 1);
    undo.setActionName(tr("Revert"));
    undo.endUndoGrouping(editor.selections());
    editor.didChangeText();
}

void VersionsFlow::complain(const QString& message)
{
    m_window.messages().show(MessageArea::Subject::Versions, {Message::Kind::Warning, message});
}

} // namespace quillory
