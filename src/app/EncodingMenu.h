#pragma once

#include "document/EncodingList.h"

#include <functional>

class QMenu;

namespace quillory {

/// Fills \a menu with \a entries; the one of \a current is checked. Nothing known reads "none".
void fillEncodingMenu(QMenu& menu, const std::vector<EncodingEntry>& entries,
                      StringEncoding current, const std::function<void(StringEncoding)>& chosen);

} // namespace quillory
