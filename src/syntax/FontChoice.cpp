#include "syntax/FontChoice.h"

#include "foundation/UserDefaults.h"

#include <array>

namespace quillory {

namespace {

constexpr std::array<QLatin1StringView, FontChoice::custom> named{
    QLatin1StringView("Edita"), QLatin1StringView("Menlo"), QLatin1StringView("Courier"),
    QLatin1StringView("Monaco")};

} // namespace

FontChoice FontChoice::from(const UserDefaults& defaults)
{
    const int font = defaults.value(keys::font);
    const int size = defaults.value(keys::fontSize);
    FontChoice choice;
    if (font == custom)
        choice.name = defaults.value(keys::customFontName);
    if (choice.name.isEmpty())
        choice.name = named[font >= 0 && font < custom ? size_t(font) : 0];
    choice.pointSize = smallest + (size >= 0 && size <= largest - smallest ? size : 0);
    return choice;
}

QStringList FontChoice::names()
{
    return {named.begin(), named.end()};
}

} // namespace quillory
