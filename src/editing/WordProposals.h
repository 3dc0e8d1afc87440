#pragma once

#include "text/TextSnapshot.h"

#include <QStringList>

namespace quillory {

/// The names in \a text (see isNameCharacter) that \a partialWord, a range of it, may become: those
/// that begin with it in any case and go on, each once, the nearest first. Where two are as near,
/// the one before comes first. The name that the range lies in is left out, and so is what begins
/// with a digit.
///
/// Looks at \a reach code units on either side at the most, and stops at \a most names, so it
/// costs about a millisecond in a text of any size.
QStringList wordProposals(const TextSnapshot& text, TextRange partialWord,
                          TextOffset reach = TextOffset(128) * 1024, qsizetype most = 200);

} // namespace quillory
