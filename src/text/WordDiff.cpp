#include "text/WordDiff.h"

#include "text/SequenceDiff.h"

#include <QHash>

namespace quillory {

namespace {

constexpr qsizetype longest = TextOffset(32) * 1024; ///< units, of both together
constexpr qint64 effort = 4'000'000;                 ///< steps: a few milliseconds
/// What is marked in two stretches with less in common would be no help.
constexpr double leastInCommon = 0.3;

enum class Kind
{
    Word,
    Blank,
    Sign
};

Kind kindOf(QChar unit)
{
    if (unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate() || unit == u'_')
        return Kind::Word;
    return unit == u' ' || unit == u'\t' ? Kind::Blank : Kind::Sign;
}

/// Words, runs of blanks and single signs.
std::vector<TextRange> tokensOf(QStringView text)
{
    std::vector<TextRange> tokens;
    for (TextOffset start = 0; start < text.size();) {
        const Kind kind = kindOf(text[start]);
        TextOffset end = start + 1;
        while (kind != Kind::Sign && end < text.size() && kindOf(text[end]) == kind)
            ++end;
        tokens.push_back(TextRange::between(start, end));
        start = end;
    }
    return tokens;
}

struct Side
{
    QStringView text;
    std::vector<TextRange> tokens = tokensOf(text);
    std::vector<quint32> symbols = {};

    void number(QHash<QStringView, quint32>& numbers)
    {
        for (const TextRange& token : tokens) {
            const QStringView word = text.sliced(token.location, token.length);
            const auto it = numbers.constFind(word);
            symbols.push_back(it == numbers.cend() ? quint32(numbers.size()) : *it);
            if (it == numbers.cend())
                numbers.insert(word, symbols.back());
        }
    }

    /// The tokens marked as \a different, those side by side as one.
    std::vector<TextRange> ranges(const std::vector<bool>& different) const
    {
        std::vector<TextRange> ranges;
        for (size_t i = 0; i < tokens.size(); ++i) {
            if (!different[i])
                continue;
            if (!ranges.empty() && ranges.back().end() == tokens[i].location)
                ranges.back().length += tokens[i].length;
            else
                ranges.push_back(tokens[i]);
        }
        return ranges;
    }
};

TextOffset lengthOf(const std::vector<TextRange>& ranges)
{
    TextOffset length = 0;
    for (const TextRange& range : ranges)
        length += range.length;
    return length;
}

} // namespace

WordDifferences wordDifferences(QStringView left, QStringView right)
{
    if (left.isEmpty() || right.isEmpty() || left.size() + right.size() > longest)
        return {};
    Side ours{left};
    Side theirs{right};
    QHash<QStringView, quint32> numbers;
    ours.number(numbers);
    theirs.number(numbers);
    SequenceDifference difference;
    compareSequences(ours.symbols, theirs.symbols, quint32(numbers.size()), difference, {}, effort);
    const WordDifferences found{ours.ranges(difference.left), theirs.ranges(difference.right)};
    const TextOffset different = lengthOf(found.left) + lengthOf(found.right);
    const double inCommon = 1 - double(different) / double(left.size() + right.size());
    return inCommon < leastInCommon ? WordDifferences() : found;
}

} // namespace quillory
