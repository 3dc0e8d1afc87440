#pragma once

#include "text/TextSnapshot.h"

#include <QString>
#include <optional>

namespace quillory {

/// A place in a text as people name it: line and column both count from 1. Columns count
/// characters: a surrogate pair is one, and so is CR LF.
struct TextPlace
{
    qint64 line = 1;
    qint64 column = 1;
    bool operator==(const TextPlace&) const = default;
};

/// "LINE" or "LINE:COLUMN", both at least 1; nothing for anything else.
std::optional<TextPlace> parseTextPlace(const QString& text);

/// Counting stops being exact here, so that a line of many megabytes costs no more than a short
/// one: of stretches with more code units than this, the code units are counted.
inline constexpr TextOffset longestCounted = 100'000;

/// The characters of \a range.
qsizetype characterCount(const TextSnapshot& text, TextRange range);

TextPlace placeOf(const TextSnapshot& text, TextOffset offset);

/// Where \a place lies in \a text: a line past the last one is the last, a column past the line's
/// end is its end.
TextOffset offsetOf(const TextSnapshot& text, TextPlace place);

} // namespace quillory
