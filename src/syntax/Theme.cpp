#include "syntax/Theme.h"

#include "syntax/PropertyListFolder.h"

#include <QFileInfo>
#include <algorithm>
#include <cmath>

namespace quillory {

using namespace Qt::StringLiterals;

namespace {

constexpr Colour selectionTint{0.339F, 0.717F, 0.999F, 1.0F};
constexpr float selectionFraction = 0.2F;
constexpr float selectionAlpha = 0.9F;

float part(const PropertyList& dictionary, QLatin1StringView key, float whole)
{
    const auto value = float(dictionary[key].toReal()) / whole;
    return std::isnan(value) ? 0.0F : std::clamp(value, 0.0F, 1.0F);
}

float blended(float from, float to)
{
    return from + (to - from) * selectionFraction;
}

} // namespace

Colour colorFromDictionary(const PropertyList& dictionary)
{
    return {part(dictionary, "R"_L1, 255), part(dictionary, "G"_L1, 255),
            part(dictionary, "B"_L1, 255), part(dictionary, "A"_L1, 1)};
}

Theme::Theme(PropertyList dictionary, const QString& path)
    : m_dictionary(std::move(dictionary)), m_name(QFileInfo(path).completeBaseName())
{}

ColourRoles Theme::roles() const
{
    std::array<OverlayAttributes, colourRoleCount> attributes;
    for (size_t i = 0; i < attributes.size(); ++i) {
        const QLatin1StringView key = themeKey(ColourRole(i));
        if (!key.isEmpty())
            attributes[i].foreground = colour(key);
    }
    return ColourRoles(attributes);
}

PlainColours Theme::plainColours() const
{
    PlainColours colours;
    colours.background = colour("background"_L1);
    colours.text = colour("text"_L1);
    colours.insertionPoint = colour("insertionPoint"_L1);
    colours.selection = {blended(colours.background.red, selectionTint.red),
                         blended(colours.background.green, selectionTint.green),
                         blended(colours.background.blue, selectionTint.blue), selectionAlpha};
    if (m_dictionary.contains(u"highlight"_s))
        colours.highlight = colour("highlight"_L1);
    return colours;
}

void ThemeList::load(const QString& folder, int index, const QString& shipped)
{
    m_themes.clear();
    m_unread = propertyListPathsBelow(folder);
    m_selected.reset();
    if (index >= 0) {
        while (m_themes.size() <= size_t(index) && readNext()) {
        }
    }
    if (index >= 0 && size_t(index) < m_themes.size()) {
        m_selected = m_themes[size_t(index)];
    } else if (folder != shipped) {
        ThemeList spare;
        spare.load(shipped, 0, shipped);
        m_selected = spare.m_selected;
    }
}

const std::vector<Theme>& ThemeList::arrangedObjects() const
{
    while (readNext()) {
    }
    return m_themes;
}

int ThemeList::indexOf(const QString& name) const
{
    const std::vector<Theme>& all = arrangedObjects();
    const auto it = std::find_if(all.begin(), all.end(),
                                 [&](const Theme& theme) { return theme.name() == name; });
    return it == all.end() ? -1 : int(it - all.begin());
}

/// Reads one file more; false where all are read.
bool ThemeList::readNext() const
{
    if (m_unread.isEmpty())
        return false;
    PropertyListFile file = propertyListAt(m_unread.takeFirst());
    if (file.problem.isEmpty())
        m_themes.emplace_back(std::move(file.dictionary), file.path);
    return true;
}

} // namespace quillory
