#pragma once

#include "foundation/PropertyList.h"
#include "syntax/ColourRole.h"

#include <optional>
#include <vector>

namespace quillory {

/// The colour of a dictionary of "R", "G" and "B" from 0 to 255 and "A" from 0 to 1. What is
/// missing is 0, so nothing at all makes a transparent black; what is outside becomes the nearest.
Colour colorFromDictionary(const PropertyList& dictionary);

/// The colours of a window's text outside all roles.
struct PlainColours
{
    Colour background;
    Colour text;
    Colour insertionPoint;
    Colour selection;                ///< a blend of the background with a light blue, see-through
    std::optional<Colour> highlight; ///< the band behind the current line; none where the theme
                                     ///< leaves it to the window
    bool operator==(const PlainColours&) const = default;
};

/// The colours of the editor, from a dictionary that anybody may have written.
class Theme
{
public:
    /// \a path is the file, which the theme has its name from.
    explicit Theme(PropertyList dictionary, const QString& path = {});

    const QString& name() const { return m_name; }
    Colour colour(QLatin1StringView key) const { return colorFromDictionary(m_dictionary[key]); }
    ColourRoles roles() const;
    PlainColours plainColours() const;

private:
    PropertyList m_dictionary;
    QString m_name;
};

/// The themes that the user can choose from, in the order of their files, and the selected one.
class ThemeList
{
public:
    /// Reads the themes below \a folder and selects the one at \a index. Where there is none, the
    /// first of the themes in \a shipped, those that come with the program, is selected instead, so
    /// that text never is invisible.
    void load(const QString& folder, int index, const QString& shipped);

    const std::vector<Theme>& arrangedObjects() const;
    /// Of the first theme called so; -1 where none is.
    int indexOf(const QString& name) const;
    /// Null where there is no theme at all.
    const Theme* selected() const { return m_selected ? &*m_selected : nullptr; }

private:
    bool readNext() const;

    // Themes are read when they are looked at: it takes one to open a window.
    mutable std::vector<Theme> m_themes;
    mutable QStringList m_unread;
    std::optional<Theme> m_selected;
};

} // namespace quillory
