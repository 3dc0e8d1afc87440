#pragma once

namespace quillory {

class FileOps;
class NotificationCenter;
class RecoveryStore;
class UserDefaults;
class VersionStore;
struct ApplicationFolders;

/// What every document shares with the others. All of it outlives them.
struct DocumentEnvironment
{
    const ApplicationFolders& folders;
    UserDefaults& defaults;
    NotificationCenter& notifications;
    FileOps& fileOps;
    RecoveryStore& recovery;
    VersionStore* versions = nullptr; ///< what files held; null where that is not kept
};

} // namespace quillory
