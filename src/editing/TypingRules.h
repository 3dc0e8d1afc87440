#pragma once

#include "editing/SelectionEdits.h"

#include <QString>
#include <span>

namespace quillory {

class UserDefaults;

/// What typing \a typed at \a selections makes of \a text. A single "}" is a ClosingBrace where
/// keys::indentNewLinesBraces is on, and each of "(", "{", "[" and "<" brings its closer along
/// where keys::insertClosingParenthesisandBrace is, and leaves the caret between the two.
SelectionEdits typingEdits(const TextSnapshot& text, std::span<const Selection> selections,
                           const QString& typed, const UserDefaults* defaults);

/// Whether \a defaults, of which there may be none, indent new lines.
bool indentsNewLines(const UserDefaults* defaults);

} // namespace quillory
