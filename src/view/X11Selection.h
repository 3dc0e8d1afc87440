#pragma once

#include <QByteArray>
#include <QClipboard>
#include <optional>

/// What another program of this X server offers, asked for on a connection of its own. Qt asks for
/// it on the GUI thread, which stands still until the other program has sent all of it.
///
/// After the Inter-Client Communication Conventions Manual (X Consortium, version 2.0), chapter 2.
namespace quillory::X11Selection {

/// Whether texts can be asked for: the program shows its windows on an X server.
bool isAvailable();

/// The text in UTF-8 of the owner of the clipboard or of the primary selection; none where nobody
/// offers one in UTF-8, or the owner lets 5 seconds pass without an answer. Waits for the other
/// program, so it is not for the GUI thread.
std::optional<QByteArray> utf8Text(QClipboard::Mode mode);

} // namespace quillory::X11Selection
