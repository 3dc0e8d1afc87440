#pragma once

#include "text/StringEncoding.h"

#include <QStringList>
#include <memory>

namespace quillory {

/// Regular expressions over a string in one call. \a receiver is the string that is worked on; a
/// null one counts as empty. Throws what ICUPattern and ICUMatcher throw.
struct NSStringICUAdditions
{
    /// \a receiver with every match replaced, as ICUMatcher::replaceAllWithString says.
    static QString replaceOccurrencesOfPattern(const QString& receiver, const QString& pattern,
                                               const QString& withString);

    /// Does \a pattern match all of \a receiver?
    static bool matchesPattern(const QString& receiver, const QString& pattern);

    /// All groups of the first match, the whole match first. Throws "Find Exception" where there is
    /// no match, so callers must be ready for it.
    static QStringList findPattern(const QString& receiver, const QString& pattern);

    static QStringList componentsSeparatedByPattern(const QString& receiver,
                                                    const QString& pattern);

    /// The string of a buffer that a NUL ends.
    static QString stringWithICUString(const char16_t* buffer);

    /// Little-endian UTF-16.
    static StringEncoding nativeUTF16Encoding();

    /// The characters of \a receiver with a NUL after them; they live as long as it, unchanged.
    static const char16_t* UTF16String(const QString& receiver);

    /// The same in a buffer of the caller's own, of length + 1 units.
    static std::unique_ptr<char16_t[]> copyUTF16String(const QString& receiver);
};

} // namespace quillory
