#pragma once

namespace quillory {

struct ApplicationFolders;
class UserDefaults;

/// On the very first start, fills the user's application-support folder with the shipped encoding
/// list, definitions and themes. Afterwards it does so again only for a folder of definitions or
/// themes that holds none at all, as the first versions of the program left them; single files that
/// the user deleted stay away. What cannot be made or copied is passed over, and files that exist
/// are kept.
void populateApplicationSupport(const ApplicationFolders& folders, UserDefaults& defaults);

} // namespace quillory
