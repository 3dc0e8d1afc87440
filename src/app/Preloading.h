#pragma once

#include <thread>

namespace quillory {

/// What every window needs and takes long to set up, set up on threads of their own while the
/// toolkit connects to the display: the catalogue of fonts, and ICU's sets of characters for
/// regular expressions.
class Preloading
{
public:
    Preloading();

    /// For who is about to use fonts: reading the same ones on two threads takes longer than
    /// waiting. To be called once.
    void waitForFonts() { m_fonts.join(); }

private:
    std::jthread m_fonts;
    std::jthread m_patterns;
};

} // namespace quillory
