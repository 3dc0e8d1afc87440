#pragma once

#include "document/EncodingList.h"

#include <functional>

class QMenu;

namespace quillory {

/// Fills \a menu with \a entries, those of one region ("Western (ISO Latin 1)", "Western (ASCII)")
/// in a submenu; the one of \a current is checked.
void fillEncodingMenu(QMenu& menu, const std::vector<EncodingEntry>& entries,
                      StringEncoding current, const std::function<void(StringEncoding)>& chosen);

} // namespace quillory
