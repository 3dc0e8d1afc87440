#pragma once

namespace quillory {

class UserDefaults;
struct ApplicationFolders;

/// Has the keys that no user has written yet read as what suits most (the user's guide lists them);
/// a written value stays, a NO too. On a dark desktop the first start selects a dark theme. Needs
/// the application object.
void registerFirstValues(const ApplicationFolders& folders, UserDefaults& defaults);

} // namespace quillory
