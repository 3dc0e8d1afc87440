#pragma once

#include "syntax/regex/ICUException.h"

#include <QStringList>
#include <memory>
#include <unicode/uregex.h>

namespace quillory {

/// One compiled regular expression, in ICU's syntax, and the text that it is applied to.
///
/// One of them belongs to one thread at a time; copies may go to others. Matching runs under a
/// limit of memory and one of time, so that no expression can hang or exhaust the program; what
/// hits one ends in a "Find Exception" whose isLimit() is true.
class ICUPattern
{
public:
    /// Enough for a quoted stretch of 4 million characters.
    static constexpr int32_t stackLimit = 64 * 1024 * 1024; // bytes

    /// In ICU's own steps of 10,000 choices, each at most about a millisecond, from one start or
    /// reset to the next; and one step more for every 1,000 units of the subject, since going
    /// through all matches of a text is one such stretch.
    static constexpr int32_t timeLimit = 250;

    /// Compiles \a string; throws "Invalid Pattern Exception".
    static std::shared_ptr<ICUPattern> patternWithString(const QString& string, uint32_t flags = 0);
    explicit ICUPattern(const QString& string, uint32_t flags = 0);

    /// The same expression without a subject; throws "Copy Exception".
    ICUPattern(const ICUPattern& other);
    ICUPattern& operator=(const ICUPattern& other);
    ICUPattern(ICUPattern&&) noexcept = default;
    ICUPattern& operator=(ICUPattern&&) noexcept = default;
    ~ICUPattern() = default;

    /// Makes \a string the subject, which shares its characters. A null string throws "Assertion
    /// Exception" (an empty one is fine), one that ICU does not take "Invalid String Exception";
    /// the subject before it then stays.
    void setStringToSearch(const QString& string);

    /// Null while there is no subject.
    const QString& stringToSearch() const { return m_stringToSearch; }

    /// The subject as UTF-16 that ends in a NUL; null while there is none. The pattern owns it.
    const char16_t* textToSearch() const;

    /// Back to the beginning of the subject; throws "Pattern Exception".
    void reset();

    uint32_t flags() const { return m_flags; }

    /// The source text; throws "Pattern Exception".
    QString pattern() const;
    QString description() const { return pattern(); }

    URegularExpression* re() const { return m_re.get(); }

    /// Takes over \a re, which has no subject yet.
    void setRe(URegularExpression* re);

    /// Makes \a string the subject and answers the pieces between the matches, each followed by the
    /// groups of the match after it. Throws "Split Exception"; a limit leaves the rest in one
    /// piece.
    QStringList componentsSplitFromString(const QString& string);

    /// Makes \a string the subject and answers whether the expression matches all of it. Throws
    /// "Find Exception".
    bool matchesString(const QString& string);

private:
    struct Close
    {
        void operator()(URegularExpression* re) const { uregex_close(re); }
    };
    using Handle = std::unique_ptr<URegularExpression, Close>;

    void setLimits();

    Handle m_re;
    uint32_t m_flags = 0;
    QString m_stringToSearch; ///< ICU looks into its characters, so it never changes in place
};

} // namespace quillory
