#include "syntax/ColourRole.h"

namespace quillory {

QLatin1StringView themeKey(ColourRole role)
{
    static constexpr std::array<const char*, colourRoleCount> keys{
        "",        "command",  "number", "instruction", "keyword", "other", "object",
        "class",   "other2",   "type",   "constant",    "",        "basic", "method",
        "keyword", "variable", "string", "attribute",   "comment"};
    return QLatin1StringView(keys[size_t(role)]);
}

ColourRoles::ColourRoles()
{
    for (int i = 0; i < colourRoleCount; ++i)
        m_representatives[size_t(i)] = ColourRole(i);
    m_representatives[size_t(ColourRole::autocomplete)] = ColourRole::keyword;
}

ColourRoles::ColourRoles(const std::array<OverlayAttributes, colourRoleCount>& attributes)
    : m_attributes(attributes)
{
    for (size_t i = 0; i < size_t(colourRoleCount); ++i) {
        size_t first = 0;
        while (!(m_attributes[first] == m_attributes[i]))
            ++first;
        m_representatives[i] = ColourRole(first);
    }
}

} // namespace quillory
