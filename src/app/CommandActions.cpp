#include "app/CommandActions.h"

#include "app/ActionKeys.h"
#include "app/ClipboardText.h"
#include "app/CommandPalette.h"
#include "app/DocumentWindow.h"
#include "app/TitleBarButtons.h"
#include "app/UserQuestions.h"
#include "commands/CommandException.h"
#include "commands/Sandbox.h"
#include "document/Document.h"
#include "foundation/Background.h"

#include <QAction>
#include <QDesktopServices>
#include <QMenu>
#include <QToolButton>
#include <QUrl>

namespace quillory {

CommandActions::CommandActions(DocumentWindow& window, UserQuestions& questions)
    : QObject(&window), m_window(window), m_questions(questions)
{
    Document& document = window.document();
    const CommandExecution& execution = document.commands().execution();
    connect(&execution, &CommandExecution::alertRequested, &document, &Document::alertRequested);
    connect(&execution, &CommandExecution::editableChanged, &document, &Document::recordChanged);
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
            this, [url] { QDesktopServices::openUrl(url); }, Qt::QueuedConnection);
    };
    surroundings.isSandboxed = isSandboxed;
    surroundings.askForTrust = [this](const TrustQuestion& question, const auto& answer) {
        const bool isServer = question.item.kind == CommandKind::Server;
        const bool isProgram =
            question.item.kind == CommandKind::Terminal || question.item.kind == CommandKind::LaTeX;
        m_questions.confirm(
            &m_window,
            {.text = tr("Allow “%1” of the language “%2”?")
                         .arg(question.item.title.value_or(QString()), question.definition),
             .explanation =
                 (isProgram  ? tr("This action did not come with Quillory. It runs the following "
                                   "program, which can do whatever you can. Allow it only if you "
                                   "know what it does.")
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
        m_questions.showAlert(&m_window, tr("Error!"), exception.reason());
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
