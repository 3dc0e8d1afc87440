#pragma once

#include "app/DialogQuestions.h"
#include "app/DocumentController.h"
#include "app/StartOptions.h"
#include "document/DocumentEnvironment.h"
#include "document/RecoveryStore.h"
#include "document/SystemFileOps.h"
#include "document/VersionStore.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"

#include <QSettings>

namespace quillory {

/// The program while it runs: what all documents share, and the controller of their windows.
class Application
{
public:
    Application();

    /// Does what \a line asks for until the last window is closed; the answer is the exit status.
    /// \a listeningSocket: see HandoverServer.
    int run(const StartOptions& line, int listeningSocket = -1);

private:
    ApplicationFolders m_folders;
    UserDefaults m_defaults;
    NotificationCenter m_notifications;
    SystemFileOps m_fileOps;
    RecoveryStore m_recovery;
    VersionStore m_versions;
    QSettings m_state;
    DocumentEnvironment m_environment;
    DialogQuestions m_questions;
    DocumentController m_controller;
};

} // namespace quillory
