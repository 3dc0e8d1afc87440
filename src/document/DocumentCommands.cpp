#include "document/DocumentCommands.h"

#include "commands/ExternalPrograms.h"
#include "commands/ServerRequests.h"
#include "foundation/ApplicationFolders.h"

namespace quillory {

DocumentCommands::DocumentCommands(QPTextView& editor, SyntaxColouring& colouring,
                                   ExternalPrograms& programs, ServerRequests& servers,
                                   const ApplicationFolders& folders,
                                   const std::function<CommandSurroundings::File()>& file)
    : m_menu(colouring), m_trust(folders.resources + QStringLiteral("/Definitions"), folders.state),
      m_execution(editor, colouring, m_trust, {})
{
    CommandSurroundings& surroundings = m_execution.surroundings();
    surroundings.file = file;
    surroundings.writeTemporaryFile = [&programs, file](const TextSnapshot& text,
                                                        const auto& done) {
        programs.writeTemporaryFile(text, file().mainExtension, done);
    };
    surroundings.performTerminalCommand = [&programs](const CommandLine& line, bool replaces,
                                                      const CommandSurroundings::Output& done) {
        programs.performTerminalCommand(line, replaces, done);
    };
    surroundings.performRunCommand = [&programs](const CommandLine& line, const QString& folder) {
        programs.performRunCommand(line, folder, true); // what runs is trusted
    };
    surroundings.performLaTeXCommand = [&programs](const CommandLine& line, const QString& folder,
                                                   const QString& title) {
        programs.performLaTeXCommand(line, folder, title);
    };
    surroundings.urlRequestWithURL = [&servers](const QString& url, const TextSnapshot& text,
                                                bool asData) {
        servers.urlRequestWithURL(url, text, asData);
    };
}

} // namespace quillory
