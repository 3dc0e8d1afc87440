#pragma once

namespace quillory {

class FileOps;
class NotificationCenter;
class RecoveryStore;
class UserDefaults;
struct ApplicationFolders;

/// What every document shares with the others. All of it outlives them.
struct DocumentEnvironment
{
    const ApplicationFolders& folders;
    UserDefaults& defaults;
    NotificationCenter& notifications;
    FileOps& fileOps;
    RecoveryStore& recovery;
};

} // namespace quillory
