#pragma once

#include "commands/CommandLine.h"
#include "commands/CommandTrust.h"
#include "foundation/Result.h"
#include "text/StringEncoding.h"
#include "text/TextSnapshot.h"

#include <QObject>
#include <functional>

class QUrl;

namespace quillory {

class QPTextView;
class SyntaxColouring;
struct ActionEntry;

/// What commands reach beyond the text of their document; nothing, where it is not set. None of
/// these waits; an answer may come within the call or later.
struct CommandSurroundings
{
    /// What of the document matters here.
    struct File
    {
        QString path;          ///< empty before the first save
        QString mainExtension; ///< of the language
        StringEncoding encoding = StringEncoding::utf8;
    };
    using Output = std::function<void(const TextSnapshot&)>;

    std::function<File()> file = [] { return File(); };
    /// Tells the text of the clipboard; nothing where it holds none.
    std::function<void(const std::function<void(const std::optional<QString>&)>& tell)>
        clipboardText = [](const auto& tell) { tell(std::nullopt); };
    std::function<void(const QUrl&)> openUrl = [](const QUrl&) {};
    std::function<bool()> isSandboxed = [] { return false; };
    std::function<void(const TrustQuestion&, const std::function<void(bool)>& answer)> askForTrust =
        [](const TrustQuestion&, const auto& answer) { answer(false); };

    std::function<void(const TextSnapshot&, const std::function<void(const Result<QString>&)>&)>
        writeTemporaryFile = [](const TextSnapshot&, const auto&) {};
    std::function<void(const CommandLine&, bool withBOOLforReplacement, const Output&)>
        performTerminalCommand = [](const CommandLine&, bool, const Output&) {};
    std::function<void(const CommandLine&, const QString& andWorkingDicrectory)> performRunCommand =
        [](const CommandLine&, const QString&) {};
    std::function<void(const CommandLine&, const QString& andWorkingDicrectory,
                       const QString& andPDFTitle)>
        performLaTeXCommand = [](const CommandLine&, const QString&, const QString&) {};
    std::function<void(const QString& url, const TextSnapshot& andWithString, bool asData)>
        urlRequestWithURL = [](const QString&, const TextSnapshot&, bool) {};
};

/// Runs the commands of the actions menu on the text.
///
/// A command that cannot be done says so by an alert, or a beep, and leaves the text as it is. One
/// that changes the text is one undo step, named after it; several selections are each put into the
/// template or replaced. A command of a definition that did not come with the program is run only
/// once the user agreed to it.
class CommandExecution : public QObject
{
    Q_OBJECT

public:
    /// Units of text that fit an address or a command line: the system takes 128 KiB an argument.
    static constexpr TextOffset longestArgument = 100'000;

    /// All of them outlive this.
    CommandExecution(QPTextView& editor, SyntaxColouring& colouring, const CommandTrust& trust,
                     CommandSurroundings surroundings);

    /// To be completed by whoever shows the document, before the first command runs.
    CommandSurroundings& surroundings() { return m_surroundings; }

    /// Runs what \a sender represents; nothing for an entry that represents nothing. Throws a
    /// CommandException where the text view refuses a change; where that turns out later, an alert
    /// says it.
    void commandAction(const ActionEntry& sender);

    /// Puts each selection into \a templateText (see TagTemplate). A caret then stands where the
    /// selection would have been, or behind a template without a place for it. Throws a
    /// CommandException where the text view refuses.
    void insertOrReplaceTags(const QString& templateText);

Q_SIGNALS:
    void alertRequested(const QString& title, const QString& message);
    /// What a program has written is to be shown in the place of what was shown before.
    void logRequested(const quillory::TextSnapshot& output);
    /// Whether the text may be edited is another answer now.
    void editableChanged();

private:
    using Step = std::function<void()>;

    void dispatch(const CommandItem& item);
    void insertClipboard(const CommandItem& item);
    void replaceWithTemplate(const std::vector<TextRange>& ranges, const QString& text);
    void replaceAllWith(const TextSnapshot& text, const TextSnapshot& before);
    void openUrl(const CommandItem& item);
    void openAddress(const QString& address);
    void sendToServer(const CommandItem& item);
    void runProgram(const CommandItem& item);
    void runScript(const CommandItem& item);
    void startWithFile(const CommandItem& item, const TextSnapshot& text);
    void start(const CommandItem& item, const CommandLine& line);
    void takeOutput(const CommandItem& item, const TextSnapshot& before,
                    const TextSnapshot& output);
    void askPermission(TextRange range, const QString& replacement, const char* operation);
    void finish();

    bool hasSelection() const;
    std::optional<TextSnapshot> textFor(const CommandItem& item);
    void whenTrusted(const CommandItem& item, const Step& then);
    bool isFreeOfSandbox();
    void tell(const QString& message);
    void guarded(const Step& step);

    QPTextView& m_editor;
    SyntaxColouring& m_colouring;
    const CommandTrust& m_trust;
    CommandSurroundings m_surroundings;
    QString m_actionName;
    bool m_isInAction = false; ///< what is thrown reaches whoever called
};

} // namespace quillory
