#include "app/CommandActions.h"

#include "app/ActionKeys.h"
#include "app/ClipboardText.h"
#include "app/CommandPalette.h"
#include "app/DocumentWindow.h"
#include "app/ProgramAids.h"
#include "app/TitleBarButtons.h"
#include "app/UserQuestions.h"
#include "commands/CommandException.h"
#include "commands/Sandbox.h"
#include "document/Document.h"

#include <QAction>
#include <QDesktopServices>
#include <QMenu>
#include <QToolButton>
#include <QUrl>

namespace quillory {

namespace {

constexpr int longestName = 60; // characters

/// What somebody else wrote, short enough to leave room for what is asked about.
QString nameOf(const QString& written)
{
    const QString name = withVisibleCharacters(written.simplified());
    return name.size() > longestName ? name.left(longestName - 1) + u'…' : name;
}

} // namespace

CommandActions::CommandActions(DocumentWindow& window) : QObject(&window), m_window(window)
{
    Document& document = window.document();
    const CommandExecution& execution = document.commands().execution();
    connect(&execution, &CommandExecution::alertRequested, &document, &Document::alertRequested);
    connect(&execution, &CommandExecution::editableChanged, &document, &Document::recordChanged);
    connect(&execution, &CommandExecution::logRequested, this,
            [&window](const TextSnapshot& output) { window.programs().showInLog(output); });
    connectDesktop();

    m_renewal.setSingleShot(true);
    m_renewal.setInterval(0);
    connect(&m_renewal, &QTimer::timeout, this, &CommandActions::renewKeys);
    connect(&window, &DocumentWindow::firstPainted, this, [this] {
        m_renewal.start();
        connect(&m_window.document().commands().menu(), &ActionsMenu::changed, &m_renewal,
                qOverload<>(&QTimer::start));
    });
}

void CommandActions::connectDesktop()
{
    CommandSurroundings& surroundings = m_window.document().commands().execution().surroundings();
    surroundings.clipboardText = [this](const auto& tell) { fetchClipboardText(this, tell); };
    surroundings.openUrl = [this](const QUrl& url) {
        // Finding out which program is for it may take the desktop some time.
        QMetaObject::invokeMethod(
            this,
            [this, url] {
                if (!QDesktopServices::openUrl(url))
                    m_window.questions().showAlert(
                        &m_window, tr("Error!"),
                        tr("No program of this desktop opens “%1”.").arg(url.toDisplayString()));
            },
            Qt::QueuedConnection);
    };
    surroundings.isSandboxed = [] { return Sandbox::aroundThisProgram().isSandboxed(); };
    surroundings.askForTrust = [this](const TrustQuestion& question, const auto& answer) {
        const bool isServer = question.item.kind == CommandKind::Server;
        const bool isProgram =
            question.item.kind == CommandKind::Terminal || question.item.kind == CommandKind::LaTeX;
        m_window.questions().confirm(
            &m_window,
            {.text = tr("Allow “%1” of the language “%2”?")
                         .arg(nameOf(question.item.title.value_or(QString())),
                              nameOf(question.definition)),
             .explanation =
                 (isProgram
                      ? tr("This action did not come with Quillory. It runs the following "
                           "program, which can do whatever you can; TEXTORCODEASFILE and "
                           "TEXTORCODEASSSTRING stand for the text. Allow it only if you know "
                           "what it does.")
                  : isServer ? tr("This action did not come with Quillory. It sends the text to "
                                  "the following address.")
                             : tr("This action did not come with Quillory. It opens the following "
                                  "address.")) +
                 u' ' + tr("You will not be asked again, until the action changes."),
             .yes = isProgram  ? tr("&Allow and Run")
                    : isServer ? tr("&Allow and Send")
                               : tr("&Allow and Open"),
             .exact = question.command},
            answer);
    };
}

void CommandActions::run(const ActionEntry& entry)
{
    try {
        m_window.document().commandAction(entry);
    } catch (const CommandException& exception) {
        m_window.questions().showAlert(&m_window, tr("Error!"), exception.reason());
    }
}

void CommandActions::showActionsMenu()
{
    m_window.titleBarButtons().actionButton().click();
}

void CommandActions::showPalette()
{
    if (!m_palette)
        m_palette = new CommandPalette(m_window);
    m_palette->open();
}

void CommandActions::renewKeys()
{
    qDeleteAll(std::exchange(m_keys, {}));
    QList<QKeySequence> given;
    for (const ActionEntry& entry : m_window.document().commands().menu().entries()) {
        const QKeySequence key = keyOf(entry);
        if (key.isEmpty() || given.contains(key) || isTaken(key))
            continue;
        given.append(key);
        auto* action = new QAction(this);
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, [this, entry] { run(entry); });
        m_window.addAction(action);
        m_keys.append(action);
    }
}

} // namespace quillory
