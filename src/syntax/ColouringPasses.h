#pragma once

#include "syntax/ColourCanvas.h"
#include "syntax/ColouringState.h"
#include "syntax/OpenSpans.h"
#include "syntax/StringLiterals.h"

// The passes that colour one canvas, each painting over what those before it painted. None of them
// costs more than O(length of the canvas).

namespace quillory {

/// Spans between two delimiters on one line, those inside them balanced.
void colourCommands(ColourCanvas& canvas, const ColouringState& state);

/// Digits, and what of a token follows its first digit.
void colourNumbers(ColourCanvas& canvas, const ColouringState& state);

/// The words of all lists, each in the role of the last of its lists.
void colourWords(ColourCanvas& canvas, const ColouringState& state);

void colourVariables(ColourCanvas& canvas, const ColouringState& state);

/// Literals whose places count from the line break before the canvas.
void colourStrings(ColourCanvas& canvas, const std::vector<StringLiteral>& second,
                   const std::vector<StringLiteral>& first);

/// Those of \a second that neither a string nor a comment stands before.
void repairStrings(ColourCanvas& canvas, const std::vector<StringLiteral>& second);

/// Names followed by "=" inside commands.
void colourAttributes(ColourCanvas& canvas, const ColouringState& state);

/// From \a token to the end of its line, for each token that is not excepted.
void colourLineComments(ColourCanvas& canvas, const QString& token);

/// Spans that may have begun before the canvas.
void colourInstructions(ColourCanvas& canvas, const ColouringState& state, OpenSpan start);
void colourBlockComments(ColourCanvas& canvas, const ColouringState& state, const QString& begin,
                         const QString& end, OpenSpan start);

} // namespace quillory
