#pragma once

#include "text/TextNode.h"

#include <QStringView>
#include <span>

namespace quillory {

/// The metrics of units that lie side by side, as if they were a whole text.
TextMetrics metricsOf(std::span<const uchar> latin1);
TextMetrics metricsOf(std::span<const char16_t> utf16);

/// The index just after the \a number-th line break (from 1); -1 where there are fewer.
TextOffset endOfBreak(std::span<const uchar> latin1, qsizetype number);
TextOffset endOfBreak(std::span<const char16_t> utf16, qsizetype number);

/// How many line breaks end at or before \a end. A CR LF of which \a end cuts off the LF has not
/// ended.
qsizetype breaksBefore(std::span<const uchar> latin1, TextOffset end);
qsizetype breaksBefore(std::span<const char16_t> utf16, TextOffset end);

/// True for the units that end a line by themselves or begin a CR LF.
constexpr bool isLineBreak(char16_t unit)
{
    return unit == u'\n' || unit == u'\r' || unit == u'\u2028' || unit == u'\u2029';
}

/// True when a leaf boundary must not fall between the two: the halves of a surrogate pair and of
/// a CR LF stay together.
constexpr bool belongTogether(char16_t before, char16_t after)
{
    return (before == u'\r' && after == u'\n') ||
           ((before & 0xFC00) == 0xD800 && (after & 0xFC00) == 0xDC00);
}

} // namespace quillory
