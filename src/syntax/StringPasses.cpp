#include "syntax/ColouringPasses.h"

namespace quillory {

namespace {

void colour(ColourCanvas& canvas, const StringLiteral& literal)
{
    canvas.paint(literal.begin - 1, literal.end - 1, ColourRole::string);
}

} // namespace

void colourStrings(ColourCanvas& canvas, const std::vector<StringLiteral>& second,
                   const std::vector<StringLiteral>& first)
{
    for (const StringLiteral& literal : second)
        colour(canvas, literal);
    for (const StringLiteral& literal : first) {
        if (!canvas.isIn(literal.before - 1, ColourRole::string))
            colour(canvas, literal);
    }
}

void repairStrings(ColourCanvas& canvas, const std::vector<StringLiteral>& second)
{
    for (const StringLiteral& literal : second) {
        if (!canvas.isIn(literal.before - 1, ColourRole::string) &&
            !canvas.isIn(literal.before - 1, ColourRole::comment))
            colour(canvas, literal);
    }
}

} // namespace quillory
