#pragma once

#include "text/CharacterSet.h"
#include "text/TextReader.h"

#include <string_view>

namespace quillory {

/// Does the end tag of a script or style element begin two characters before \a letter?
bool isElementEndTag(std::u16string_view units, TextOffset letter);

/// Tells comments of HTML that hide the body of a script or style element from old browsers, and so
/// hold code: "-->" closes them right before the element's end tag. Asked for one comment after the
/// other, it reads the text between them once.
class WrappedScript
{
public:
    WrappedScript(const TextSnapshot& text, CharacterSet letters)
        : m_reader(text), m_letters(std::move(letters))
    {}

    /// Where the first letter at \a offset or after it stands, if the end tag of a script or style
    /// element begins two characters before it; -1 where it does not.
    TextOffset endTagAfter(TextOffset offset);

private:
    TextOffset letterFrom(TextOffset offset);

    TextReader m_reader;
    CharacterSet m_letters;
    TextOffset m_asked = -1;  ///< the offset that m_letter was sought from; -1 at first
    TextOffset m_letter = -1; ///< the text's length where there is none
};

} // namespace quillory
