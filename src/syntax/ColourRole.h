#pragma once

#include "text/Overlay.h"

#include <QLatin1StringView>
#include <array>

namespace quillory {

/// The syntactic categories that text is coloured by. The word roles stand in the order of their
/// passes. Nothing is ever painted in `conts`: no theme names a colour for it.
enum class ColourRole : quint8
{
    none,
    command,
    number,
    instruction,
    keyword,
    other,
    object,
    classRole,
    other2,
    type,
    constant,
    conts,
    basic,
    method,
    autocomplete, ///< has the colour of keyword
    variable,
    string,
    attribute,
    comment,
};

inline constexpr int colourRoleCount = int(ColourRole::comment) + 1;

/// The key of a theme that holds the role's colour; empty for none and conts.
QLatin1StringView themeKey(ColourRole role);

/// A stretch of text that is painted in one role.
struct RoleRun
{
    TextRange range;
    ColourRole role = ColourRole::none;
    bool operator==(const RoleRun&) const = default;
};

/// What each role looks like. Two roles are the same where they look the same: whether a character
/// already is "in a role" is asked of its looks.
class ColourRoles
{
public:
    /// Every role unlike every other.
    ColourRoles();
    explicit ColourRoles(const std::array<OverlayAttributes, colourRoleCount>& attributes);

    /// Empty for none, and for every role of a fresh object.
    const OverlayAttributes& attributes(ColourRole role) const
    {
        return m_attributes[size_t(role)];
    }

    /// The first role that looks like \a role.
    ColourRole representative(ColourRole role) const { return m_representatives[size_t(role)]; }
    bool same(ColourRole a, ColourRole b) const { return representative(a) == representative(b); }

private:
    std::array<OverlayAttributes, colourRoleCount> m_attributes;
    std::array<ColourRole, colourRoleCount> m_representatives;
};

} // namespace quillory
