#pragma once

#include "commands/ActionsMenu.h"
#include "commands/CommandExecution.h"
#include "commands/CommandTrust.h"

namespace quillory {

class ExternalPrograms;
class ServerRequests;
struct ApplicationFolders;

/// The actions of a document: what its definition lists, which of it may run, and running it.
class DocumentCommands
{
public:
    /// All of them outlive this; \a file answers what holds now.
    DocumentCommands(QPTextView& editor, SyntaxColouring& colouring, ExternalPrograms& programs,
                     ServerRequests& servers, const ApplicationFolders& folders,
                     const std::function<CommandSurroundings::File()>& file);

    ActionsMenu& menu() { return m_menu; }
    CommandExecution& execution() { return m_execution; }

private:
    ActionsMenu m_menu;
    CommandTrust m_trust;
    CommandExecution m_execution;
};

} // namespace quillory
