#pragma once

#include "text/TextSnapshot.h"

namespace quillory {

/// The line-break convention of a file, by the code that documents and archives store. Any other
/// code converts as Unix.
enum class LineBreakFormat : int
{
    none = 0,
    unixLf = 1,
    macCr = 2,
    windowsCrLf = 3,
};

/// What ends a line in \a format.
QStringView lineBreak(LineBreakFormat format);

/// The name under which the format is shown.
QString label(LineBreakFormat format);

/// The format that the text's first CR tells of: Windows where LF follows, else Mac; Unix where
/// there is no CR. Breaks before that CR, and after it, do not count.
LineBreakFormat detectLBFormat(const TextSnapshot& text);

/// \a text with every LF, CR and CR LF replaced by the break of \a format. U+2028 and U+2029 stay.
/// Where nothing needs to change the result is the same tree.
TextSnapshot converted(const TextSnapshot& text, LineBreakFormat format);

/// How many breaks of each kind a text holds.
struct LineBreakCounts
{
    qsizetype lf = 0;
    qsizetype cr = 0;
    qsizetype crLf = 0;
    qsizetype separators = 0; ///< U+2028 and U+2029

    /// More than one kind of LF, CR and CR LF.
    bool isMixed() const { return (lf > 0) + (cr > 0) + (crLf > 0) > 1; }
    bool operator==(const LineBreakCounts&) const = default;
};

LineBreakCounts lineBreakCounts(const TextSnapshot& text);

} // namespace quillory
