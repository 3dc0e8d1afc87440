#pragma once

#include <QKeySequence>

namespace quillory {

struct ActionEntry;

/// The key of \a entry on this system: Command is Ctrl, Option is Alt, Control is Meta (the Super
/// key), and a capital letter comes with Shift. Empty for an entry without one, or with more than
/// one character or a blank for it.
QKeySequence keyOf(const ActionEntry& entry);

/// Whether a command of the menus has \a key.
bool isTaken(const QKeySequence& key);

} // namespace quillory
