#pragma once

#include <QString>

namespace quillory {

class UserDefaults;

/// The font that the user defaults ask for; whoever shows text finds one for the name.
struct FontChoice
{
    QString name;
    int pointSize = 0;

    /// From "font" (0 to 3 are fonts by name, 4 is the one in "customFontName") and "fontSize" (0
    /// to 12 are 11 to 23 points). Anything else asks for the first font, in 11 points.
    static FontChoice from(const UserDefaults& defaults);
    bool operator==(const FontChoice&) const = default;
};

} // namespace quillory
