#pragma once

namespace quillory {

struct ApplicationFolders;
class UserDefaults;

/// On the very first start, fills the user's application-support folder with the shipped encoding
/// list, definitions and themes; afterwards does nothing, even when the user deleted files. What
/// cannot be made or copied is passed over, and files that exist are kept.
void populateApplicationSupport(const ApplicationFolders& folders, UserDefaults& defaults);

} // namespace quillory
