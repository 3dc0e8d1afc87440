#include "support/Folders.h"
#include "syntax/Theme.h"

#include "foundation/PropertyListReader.h"

#include <QDir>
#include <QSet>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;

QString themesFolder()
{
    return QStringLiteral(QUILLORY_SOURCE_DIR "/resources/Themes");
}

Theme themeNamed(const QString& name)
{
    const QString path = themesFolder() + u'/' + name + u".plist"_s;
    const auto stored = readPropertyListFile(path);
    EXPECT_TRUE(stored) << qPrintable(name);
    return stored ? Theme(stored->list, path) : Theme(PropertyList(), path);
}

/// The relative luminance of a colour that is not see-through, from 0 to 1, by the definition of
/// the Web Content Accessibility Guidelines 2.2.
double luminance(const Colour& colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) +
           0.0722 * linear(colour.blue);
}

/// From 1, no contrast, to 21; the guidelines' success criteria 1.4.3 and 1.4.11 want 4.5 for text
/// and 3 for what only stands out.
double contrast(const Colour& a, const Colour& b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// What is seen of \a upper over \a lower.
Colour over(const Colour& upper, const Colour& lower)
{
    const auto mixed = [&](float a, float b) { return a * upper.alpha + b * (1 - upper.alpha); };
    return {mixed(upper.red, lower.red), mixed(upper.green, lower.green),
            mixed(upper.blue, lower.blue), 1};
}

class ThemeFiles : public testing::TestWithParam<const char*>
{
protected:
    const Theme theme = themeNamed(QString::fromLatin1(GetParam()));
};

INSTANTIATE_TEST_SUITE_P(Starters, ThemeFiles,
                         testing::Values("Default", "Discreet", "Fluffish", "Insomniac",
                                         "Solarized_Light"));

TEST_P(ThemeFiles, CanBeReadOnEverySurface)
{
    const PlainColours plain = theme.plainColours();
    ASSERT_TRUE(plain.highlight);
    const std::pair<const char*, Colour> surfaces[] = {
        {"the background", plain.background},
        {"the current line", over(*plain.highlight, plain.background)},
        {"the selection", over(plain.selection, plain.background)},
    };
    const ColourRoles roles = theme.roles();
    for (const auto& [surface, colour] : surfaces) {
        EXPECT_GE(contrast(plain.text, colour), 4.5) << surface;
        EXPECT_GE(contrast(plain.insertionPoint, colour), 3) << surface;
        for (int i = 0; i < colourRoleCount; ++i) {
            if (const auto& role = roles.attributes(ColourRole(i)).foreground) {
                EXPECT_GE(contrast(*role, colour), 3)
                    << themeKey(ColourRole(i)).data() << " on " << surface;
            }
        }
    }
}

// Where two roles have the same colour, what is painted in one counts as painted in the other.
TEST_P(ThemeFiles, TellsTheRolesApart)
{
    const ColourRoles roles = theme.roles();
    for (int i = 0; i < colourRoleCount; ++i) {
        const auto role = ColourRole(i);
        if (role == ColourRole::none || role == ColourRole::conts)
            continue;
        const auto& foreground = roles.attributes(role).foreground;
        ASSERT_TRUE(foreground);
        EXPECT_EQ(foreground->alpha, 1) << themeKey(role).data();
        EXPECT_FALSE(*foreground == theme.plainColours().text) << themeKey(role).data();
        const bool borrows = role == ColourRole::autocomplete;
        EXPECT_EQ(roles.representative(role), borrows ? ColourRole::keyword : role)
            << themeKey(role).data();
    }
}

TEST(ThemeFolder, HoldsTheStartersLightAndDark)
{
    EXPECT_EQ(QDir(themesFolder()).entryList({u"*.plist"_s}, QDir::Files, QDir::Name),
              QStringList({u"Default.plist"_s, u"Discreet.plist"_s, u"Fluffish.plist"_s,
                           u"Insomniac.plist"_s, u"Solarized_Light.plist"_s}));
    EXPECT_GT(luminance(themeNamed(u"Default"_s).plainColours().background), 0.8);
    EXPECT_LT(luminance(themeNamed(u"Insomniac"_s).plainColours().background), 0.05);
}

} // namespace
} // namespace quillory
