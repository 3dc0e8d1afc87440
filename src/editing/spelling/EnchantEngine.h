#pragma once

#include "editing/spelling/SpellingEngine.h"

namespace quillory {

/// The dictionaries of the desktop, as Enchant finds them. The library is loaded by this call, not
/// with the program; where it is missing, there are no languages. Words that are learnt go into
/// Enchant's word list of the user, which other programs read too.
std::unique_ptr<SpellingEngine> makeEnchantEngine();

} // namespace quillory
