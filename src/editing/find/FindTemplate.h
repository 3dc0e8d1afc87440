#pragma once

#include "editing/find/FindWalk.h"

#include <vector>

namespace quillory {

/// What matches are replaced by. In the place of a text it may be a template, in which $1 or ${1}
/// stands for the first group of the match, $0 for all of it and ${name} for a group with a name;
/// \n is a line feed, \t a tab, and a backslash takes the meaning from any other character.
class FindTemplate
{
public:
    explicit FindTemplate(const QString& text, bool isTemplate);

    /// For the last match of \a walk. A group that the pattern does not have stands for itself.
    QString replacement(const FindWalk& walk) const;

private:
    struct Part
    {
        QString text;       ///< as it is written
        QString group = {}; ///< its number or name; empty for a text
    };

    std::vector<Part> m_parts;
};

} // namespace quillory
