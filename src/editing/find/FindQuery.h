#pragma once

#include "syntax/regex/ICUPattern.h"

namespace quillory {

/// What is looked for in a text.
struct FindQuery
{
    QString text;
    bool isRegex = false; ///< \a text is an expression in ICU's syntax; ^ and $ are for every line
    bool matchesCase = false;
    bool wholeWords = false;

    bool operator==(const FindQuery&) const = default;

    /// Throws "Invalid Pattern Exception".
    std::shared_ptr<ICUPattern> pattern() const;
};

} // namespace quillory
