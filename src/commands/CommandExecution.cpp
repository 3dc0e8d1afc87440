#include "commands/CommandExecution.h"

#include "commands/ActionsMenu.h"
#include "commands/CommandException.h"
#include "commands/CommandPlaceholders.h"
#include "commands/PercentEscapes.h"
#include "editing/QPTextView.h"
#include "editing/SelectionLines.h"
#include "syntax/SyntaxColouring.h"

#include <QFileInfo>
#include <QPointer>
#include <QScopedValueRollback>
#include <QUrl>

namespace quillory {

namespace {

size_t primaryOf(const QPTextView& editor)
{
    const auto& all = editor.selections();
    return size_t(std::find(all.begin(), all.end(), editor.primarySelection()) - all.begin());
}

QString withoutExtension(const QString& path)
{
    const QFileInfo file(path);
    return file.completeBaseName().isEmpty() ? path : file.path() + u'/' + file.completeBaseName();
}

/// Whether the desktop is to show what the program made.
bool showsProduct(const CommandItem& item)
{
    return item.kind == CommandKind::LaTeX ? item.shouldOpenPDFPreview : item.shouldRun;
}

bool replacesDocument(const CommandItem& item)
{
    return !showsProduct(item) && item.outputCanReplaceDocument;
}

} // namespace

CommandExecution::CommandExecution(QPTextView& editor, SyntaxColouring& colouring,
                                   const CommandTrust& trust, CommandSurroundings surroundings)
    : m_editor(editor), m_colouring(colouring), m_trust(trust),
      m_surroundings(std::move(surroundings))
{}

void CommandExecution::commandAction(const ActionEntry& sender)
{
    if (!sender.representedObject)
        return;
    const QScopedValueRollback inAction(m_isInAction, true);
    dispatch(*sender.representedObject);
}

void CommandExecution::dispatch(const CommandItem& item)
{
    m_actionName = item.title.value_or(QString());
    const QString body = item.string.value_or(QString());
    switch (item.kind) {
    case CommandKind::Clipboard:
        insertClipboard(item);
        return;
    case CommandKind::Command:
        insertOrReplaceTags(body);
        break;
    case CommandKind::Snippet:
        replaceWithTemplate(m_editor.selectedRanges(), body);
        break;
    case CommandKind::Template:
        replaceWithTemplate({m_editor.string().range()}, body);
        break;
    case CommandKind::Url:
        openUrl(item);
        break;
    case CommandKind::Server:
        sendToServer(item);
        break;
    case CommandKind::Terminal:
    case CommandKind::LaTeX:
        runProgram(item);
        return;
    case CommandKind::Script:
        runScript(item);
        break;
    case CommandKind::Help:
        whenTrusted(item, [this, body] { openAddress(body); });
        break;
    default:
        break;
    }
    finish();
}

/// The text itself carries no attributes that would have to be set back; only what is seen of its
/// colours is brought up to date.
void CommandExecution::finish()
{
    if (!m_colouring.isPlainText())
        m_colouring.pageRecolour();
}

// Commands that insert

void CommandExecution::insertClipboard(const CommandItem& item)
{
    const auto insert = [this, item](const std::optional<QString>& clipboard) {
        m_actionName = item.title.value_or(QString());
        insertOrReplaceTags(clipboard ? item.string.value_or(QString()).replace(
                                            placeholders::clipboard, escapedForTemplate(*clipboard))
                                      : item.stringWithout.value_or(QString()));
        finish();
    };
    m_surroundings.clipboardText(
        [guard = QPointer(this), insert](const std::optional<QString>& clipboard) {
            if (guard)
                guard->guarded([&] { insert(clipboard); });
        });
}

void CommandExecution::askPermission(TextRange range, const QString& replacement,
                                     const char* operation)
{
    if (!m_editor.shouldChangeTextInRange(range, replacement))
        throw CommandException(QString::fromLatin1(operation),
                               tr("Cannot change text in text view"));
}

void CommandExecution::insertOrReplaceTags(const QString& templateText)
{
    const TagTemplate tags = TagTemplate::from(templateText);
    const TextSnapshot before(tags.before);
    const TextSnapshot after(tags.after);
    std::vector<TextEdit> edits;
    std::vector<Selection> selections;
    TextOffset shift = 0;
    for (const Selection& selection : m_editor.selections()) {
        const TextRange range = selection.range();
        askPermission(range, templateText, "insertOrReplaceTags:");
        TextSnapshot result = before;
        if (tags.hasPlace)
            result = result.replacing({result.length(), 0}, m_editor.string().slice(range));
        result = result.replacing({result.length(), 0}, after);
        const TextOffset start = range.location + shift;
        if (selection.isCaret())
            selections.push_back(Selection::caret(start + before.length()));
        else
            selections.push_back(Selection::over({start, result.length()}));
        shift += result.length() - range.length;
        edits.push_back({range, result});
    }
    m_editor.replaceCharacters(edits, std::move(selections), primaryOf(m_editor), m_actionName);
}

/// Leaves a caret behind each \a text.
void CommandExecution::replaceWithTemplate(const std::vector<TextRange>& ranges,
                                           const QString& text)
{
    const TextSnapshot replacement(text);
    std::vector<TextEdit> edits;
    std::vector<Selection> carets;
    TextOffset shift = 0;
    for (const TextRange range : ranges) {
        askPermission(range, text, "replaceWithTemplate");
        edits.push_back({range, replacement});
        carets.push_back(Selection::caret(range.location + shift + replacement.length()));
        shift += replacement.length() - range.length;
    }
    const size_t primary = std::min(primaryOf(m_editor), carets.size() - 1);
    m_editor.replaceCharacters(edits, std::move(carets), primary, m_actionName);
}

// The text that a command works on

bool CommandExecution::hasSelection() const
{
    const auto& all = m_editor.selections();
    return std::any_of(all.begin(), all.end(), [](const Selection& s) { return !s.isCaret(); });
}

/// Nothing, with an alert, where \a item wants a selection and there is none.
std::optional<TextSnapshot> CommandExecution::textFor(const CommandItem& item)
{
    if (!item.onlyValidForSelection)
        return m_editor.string();
    if (hasSelection())
        return m_editor.selectedText();
    tell(tr("Command (Action) is set to work with a selection."));
    return std::nullopt;
}

// Addresses and servers

void CommandExecution::openUrl(const CommandItem& item)
{
    QString address = item.string.value_or(QString());
    if (address.contains(placeholders::text)) {
        const TextSnapshot text = hasSelection() ? m_editor.selectedText() : m_editor.string();
        if (text.length() > longestArgument) {
            tell(tr("The text is too long for an address. Select a part of it."));
            return;
        }
        address.replace(placeholders::text, text.string());
    }
    const auto escaped = withPercentEscapes(address, m_surroundings.file().encoding);
    if (!escaped) {
        tell(tr("The document's encoding lacks a character of the text. Choose another encoding."));
        return;
    }
    whenTrusted(item, [this, escaped] { openAddress(*escaped); });
}

void CommandExecution::openAddress(const QString& address)
{
    const QUrl url(address);
    if (!url.isValid() || url.isRelative())
        tell(tr("“%1” is no address that can be opened.").arg(address));
    else
        m_surroundings.openUrl(url);
}

void CommandExecution::sendToServer(const CommandItem& item)
{
    const std::optional<TextSnapshot> text = textFor(item);
    if (!text)
        return;
    whenTrusted(item, [this, item, text] {
        m_surroundings.urlRequestWithURL(item.string.value_or(QString()), *text, item.sendAsData);
    });
}

// Programs

void CommandExecution::runProgram(const CommandItem& item)
{
    const QString body = item.string.value_or(QString());
    if (body.isEmpty()) {
        Q_EMIT m_editor.beep();
        return;
    }
    const std::optional<TextSnapshot> text = textFor(item);
    if (!text)
        return;
    if (item.kind == CommandKind::LaTeX && m_editor.string().isEmpty()) {
        Q_EMIT m_editor.beep();
        return;
    }
    const bool wantsFile = body.contains(placeholders::textAsFile);
    if (!wantsFile && !body.contains(placeholders::textAsString)) {
        tell(tr("Please include either TEXTORCODEASFILE or TEXTORCODEASSSTRING in the command."));
        return;
    }
    if (hasPlaceholderAsProgram(body)) {
        tell(tr("The text cannot be the program that runs. Please begin the command with the path "
                "of a program."));
        return;
    }
    if (!wantsFile && text->length() > longestArgument) {
        tell(tr("The text is too long for a command line. Use TEXTORCODEASFILE in the command, or "
                "select a part of the text."));
        return;
    }
    if (showsProduct(item) && !isFreeOfSandbox())
        return;
    if (replacesDocument(item))
        askPermission(m_editor.string().range(), QString(), "replaceWithTemplate");
    whenTrusted(item, [this, item, body, text, wantsFile] {
        if (wantsFile)
            startWithFile(item, *text);
        else
            start(item, commandLineWithText(body, text->string()));
    });
}

/// What is to be replaced cannot be edited meanwhile.
void CommandExecution::startWithFile(const CommandItem& item, const TextSnapshot& text)
{
    const bool locks = replacesDocument(item) && m_editor.isEditable();
    const auto setLocked = [this, locks](bool isLocked) {
        if (!locks)
            return;
        m_editor.setEditable(!isLocked);
        Q_EMIT editableChanged();
    };
    setLocked(true);
    m_surroundings.writeTemporaryFile(
        text, [guard = QPointer(this), item, setLocked](const Result<QString>& path) {
            if (!guard)
                return;
            setLocked(false);
            if (path)
                guard->start(item, commandLineWithFile(*item.string, *path));
            else
                guard->tell(path.failure().message);
        });
}

void CommandExecution::start(const CommandItem& item, const CommandLine& line)
{
    const QString path = m_surroundings.file().path;
    const QString folder = path.isEmpty() ? QString() : QFileInfo(path).path();
    if (item.kind == CommandKind::LaTeX && showsProduct(item)) {
        m_surroundings.performLaTeXCommand(line, folder,
                                           path.isEmpty() ? QString() : withoutExtension(path));
        finish();
        return;
    }
    if (showsProduct(item)) {
        m_surroundings.performRunCommand(line, folder);
        finish();
        return;
    }
    m_surroundings.performTerminalCommand(
        line, replacesDocument(item),
        [guard = QPointer(this), item, before = m_editor.string()](const TextSnapshot& output) {
            if (guard)
                guard->guarded([&] { guard->takeOutput(item, before, output); });
        });
}

void CommandExecution::takeOutput(const CommandItem& item, const TextSnapshot& before,
                                  const TextSnapshot& output)
{
    m_actionName = item.title.value_or(QString());
    if (!replacesDocument(item))
        Q_EMIT logRequested(output);
    else if (m_editor.string().isSameTree(before)) // else the file was read again meanwhile
        replaceAllWith(output, before);
    finish();
}

void CommandExecution::replaceAllWith(const TextSnapshot& text, const TextSnapshot& before)
{
    askPermission(before.range(), QString(), "replaceWithTemplate");
    const TextEdit edit{before.range(), text};
    m_editor.replaceCharacters({&edit, 1}, onSameLines(m_editor.selections(), before, text),
                               primaryOf(m_editor), m_actionName);
}

void CommandExecution::runScript(const CommandItem& item)
{
    if (!isFreeOfSandbox() || !textFor(item))
        return;
    if (!item.string.value_or(QString()).contains(placeholders::text))
        tell(tr("Please check the script."));
    else
        tell(tr("Scripts cannot be run here: this system has no interpreter for them."));
}

// What may be done

bool CommandExecution::isFreeOfSandbox()
{
    if (!m_surroundings.isSandboxed())
        return true;
    Q_EMIT alertRequested(
        tr("Sorry!"), tr("This feature is not available in the sandboxed Mac App Store version."));
    return false;
}

void CommandExecution::whenTrusted(const CommandItem& item, const Step& then)
{
    const Definition* definition = m_colouring.definition();
    if (!definition)
        return;
    if (!CommandTrust::needsTrust(item) || m_trust.isTrusted(item, *definition)) {
        then();
        return;
    }
    m_surroundings.askForTrust(CommandTrust::question(item, *definition),
                               [guard = QPointer(this), item, then](bool agrees) {
                                   if (!guard || !agrees)
                                       return;
                                   guard->m_trust.trust(item);
                                   guard->guarded(then);
                               });
}

void CommandExecution::tell(const QString& message)
{
    Q_EMIT alertRequested(tr("Error!"), message);
}

/// Runs \a step, which may be called from the event loop, where nobody takes what it throws.
void CommandExecution::guarded(const Step& step)
{
    try {
        step();
    } catch (const CommandException& exception) {
        if (m_isInAction)
            throw;
        tell(exception.reason());
    }
}

} // namespace quillory
