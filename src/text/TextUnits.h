#pragma once

#include "text/TextRange.h"

#include <QStringView>

namespace quillory {

// A stretch of a text's leaf comes with 8-bit units (which are Latin 1) or with 16-bit ones; these
// let one template read both.

inline const uchar* unitsOf(QLatin1StringView view)
{
    return reinterpret_cast<const uchar*>(view.data());
}

inline const char16_t* unitsOf(QStringView view)
{
    return view.utf16();
}

/// How many UTF-16 code units \a character takes.
constexpr TextOffset unitsOf(char32_t character)
{
    return character < 0x10000 ? 1 : 2;
}

constexpr bool isSpaceOrTab(char32_t character)
{
    return character == U' ' || character == U'\t';
}

} // namespace quillory
