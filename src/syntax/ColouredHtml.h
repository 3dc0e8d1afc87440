#pragma once

#include "syntax/ColourRole.h"
#include "syntax/Theme.h"
#include "text/TextSnapshot.h"

#include <QTextStream>
#include <vector>

namespace quillory {

/// A text, what it is painted in, and what that looks like.
struct ColouredText
{
    TextSnapshot text;
    std::vector<RoleRun> runs; ///< in order, apart, inside the text; reach beyond what is written
    ColourRoles roles;
    PlainColours plain;
};

/// Writes all of \a coloured as a page of its own, in UTF-8: nothing but the text, in its colours.
/// \a out must write UTF-8, as a fresh QTextStream does. O(length of the text); any thread.
void writeHtmlPage(QTextStream& out, const ColouredText& coloured, const QString& title);

/// \a range of \a coloured as one element to be pasted into other programs' documents, its styles
/// with it. \a fontFamily: one name, or empty for any font of fixed pitch.
QString htmlFragment(const ColouredText& coloured, TextRange range, const QString& fontFamily = {});

/// \a colour as a style sheet writes it: "#rrggbb", or "rgba(…)" where it is see-through.
QString cssColour(const Colour& colour);

} // namespace quillory
