#pragma once

#include <QString>
#include <QStringList>

namespace quillory {

class UserDefaults;

/// The font that the user defaults ask for; whoever shows text finds one for the name.
struct FontChoice
{
    static constexpr int custom = 4;    ///< the value of "font" for the user's own
    static constexpr int smallest = 11; ///< points
    static constexpr int largest = 23;  ///< points

    QString name;
    int pointSize = 0;

    /// From "font" (0 to 3 are fonts by name, 4 is the one in "customFontName") and "fontSize" (0
    /// to 12 are 11 to 23 points). Anything else asks for the first font, in 11 points.
    static FontChoice from(const UserDefaults& defaults);
    /// The names that 0 to 3 stand for.
    static QStringList names();
    bool operator==(const FontChoice&) const = default;
};

} // namespace quillory
