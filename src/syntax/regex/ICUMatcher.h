#pragma once

#include "syntax/regex/ICUPattern.h"
#include "text/TextRange.h"

namespace quillory {

/// Finds and replaces with a pattern, which several matchers may share, and its subject with it: a
/// subject that one of them is given is then what the others search too.
///
/// Ranges are UTF-16 code units of the subject. Everything that asks ICU throws "Find Exception".
class ICUMatcher
{
public:
    /// Makes \a string the subject of \a pattern; throws as ICUPattern::setStringToSearch does.
    ICUMatcher(std::shared_ptr<ICUPattern> pattern, const QString& string);
    static ICUMatcher matcherWithPattern(std::shared_ptr<ICUPattern> pattern,
                                         const QString& overString);

    /// Does the pattern match the whole subject?
    bool matches();

    /// Goes to the match after the one before; false where there is no more.
    bool findNext();

    /// Begins anew and goes to the first match at \a index or after it.
    bool findFromIndex(TextOffset index);

    /// Does the pattern match at \a index, not necessarily to the subject's end?
    bool lookingAt(TextOffset index = 0);

    TextRange rangeOfMatch() const { return rangeOfMatchGroup(0); }

    /// The location is -1 for a group that has no part in the match.
    TextRange rangeOfMatchGroup(int group) const;

    /// The text of the match.
    QString group() const;

    /// The text of a group, empty for one that has no part in the match.
    QString groupAtIndex(int group) const;

    /// How many capturing groups the pattern has.
    int numberOfGroups() const;

    /// The subject with all matches, or the first, replaced by \a string, in which "$1" stands for
    /// the first group and a backslash takes the meaning from the character after it.
    QString replaceAllWithString(const QString& string);
    QString replaceFirstWithString(const QString& string);
    QString performReplacementWithString(const QString& string, bool replaceAll);

    void reset() { m_pattern->reset(); }
    const std::shared_ptr<ICUPattern>& pattern() const { return m_pattern; }
    void setPattern(std::shared_ptr<ICUPattern> pattern) { m_pattern = std::move(pattern); }

private:
    URegularExpression* re() const { return m_pattern->re(); }

    std::shared_ptr<ICUPattern> m_pattern;
};

} // namespace quillory
