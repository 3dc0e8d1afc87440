#include "syntax/FontChoice.h"

#include "foundation/UserDefaults.h"

#include <array>

namespace quillory {

namespace {

constexpr std::array<const char*, 4> names{"Edita", "Menlo", "Courier", "Monaco"};
constexpr int customFont = 4;
constexpr int smallest = 11; // points
constexpr int largestIndex = 12;

} // namespace

FontChoice FontChoice::from(const UserDefaults& defaults)
{
    const int font = defaults.value(keys::font);
    const int size = defaults.value(keys::fontSize);
    FontChoice choice;
    if (font == customFont)
        choice.name = defaults.value(keys::customFontName);
    if (choice.name.isEmpty())
        choice.name =
            QLatin1StringView(names[font >= 0 && size_t(font) < names.size() ? size_t(font) : 0]);
    choice.pointSize = smallest + (size >= 0 && size <= largestIndex ? size : 0);
    return choice;
}

} // namespace quillory
