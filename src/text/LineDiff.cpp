#include "text/LineDiff.h"

#include "text/LineMetrics.h"
#include "text/TextReader.h"

#include <algorithm>

namespace quillory {

namespace {

constexpr TextOffset unitsBetweenQuestions = TextOffset(16) << 20;
constexpr qsizetype blocksBetweenQuestions = 1 << 16;

/// Lines without the empty one that follows the last break.
qsizetype linesOf(const TextSnapshot& text)
{
    const qsizetype count = text.lineCount();
    return text.lineStart(LineIndex(count - 1)) == text.length() ? count - 1 : count;
}

/// How many units the texts end with in common, at most \a most.
TextOffset commonSuffixLength(const TextSnapshot& a, const TextSnapshot& b, TextOffset most)
{
    TextOffset done = 0;
    const auto isSame = [&](TextOffset length) {
        return commonLength(a, a.length() - done - length, b, b.length() - done - length, length) ==
               length;
    };
    // In steps that grow as long as they fit, then shrink.
    TextOffset step = 64;
    for (; step <= most - done && isSame(step); step *= 2)
        done += step;
    for (step = std::min(step, most - done); step > 0;) {
        if (step <= most - done && isSame(step))
            done += step;
        else
            step /= 2;
    }
    return done;
}

/// What the lines of a text are told apart by, as long as nobody looks closer.
class LineHashes
{
public:
    /// Of the lines in \a range, which are whole. Empty when it was cancelled.
    static std::vector<quint64> of(const TextSnapshot& text, TextRange range, const GoesOn& goesOn)
    {
        LineHashes hashes;
        TextOffset looked = 0;
        text.forEachPiece(range, [&](const TextPiece& piece) {
            std::visit([&](auto units) { hashes.take(units); }, piece.units);
            looked += piece.length();
            if (looked < unitsBetweenQuestions)
                return true;
            looked = 0;
            return !goesOn || goesOn();
        });
        if (hashes.m_hash != seed)
            hashes.end();
        return std::move(hashes.m_lines);
    }

private:
    // FNV-1a over the code units, the draft by Fowler, Noll and Vo, finished by a multiplication.
    static constexpr quint64 seed = 0xcbf29ce484222325U;
    static constexpr quint64 prime = 0x100000001b3U;

    static constexpr char16_t codeOf(char latin1) { return uchar(latin1); }
    static constexpr char16_t codeOf(QChar unit) { return unit.unicode(); }

    template<class Units>
    void take(Units units)
    {
        const auto* const last = units.data() + units.size();
        for (const auto* at = units.data(); at != last; ++at) {
            const char16_t unit = codeOf(*at);
            m_hash = (m_hash ^ unit) * prime;
            if (isLineBreak(unit) && !(unit == u'\r' && at + 1 != last && codeOf(at[1]) == u'\n'))
                end();
        }
    }

    void end()
    {
        m_lines.push_back((m_hash ^ (m_hash >> 32)) * 0x9e3779b97f4a7c15U);
        m_hash = seed;
    }

    std::vector<quint64> m_lines;
    quint64 m_hash = seed;
};

/// Numbers from 0 on in the place of hashes, the same for the same.
class Symbols
{
public:
    Symbols(const std::vector<quint64>& left, const std::vector<quint64>& right)
        : m_left(left.size()), m_right(right.size())
    {
        struct Place
        {
            quint64 hash;
            quint32 index; ///< in the one after the other
        };
        std::vector<Place> places;
        places.reserve(left.size() + right.size());
        for (const auto* side : {&left, &right}) {
            for (const quint64 hash : *side)
                places.push_back({hash, quint32(places.size())});
        }
        std::sort(places.begin(), places.end(),
                  [](const Place& a, const Place& b) { return a.hash < b.hash; });
        for (size_t i = 0; i < places.size(); ++i) {
            if (i == 0 || places[i].hash != places[i - 1].hash)
                ++m_count;
            const size_t index = places[i].index;
            (index < m_left.size() ? m_left[index] : m_right[index - m_left.size()]) = m_count - 1;
        }
    }

    const std::vector<quint32>& left() const { return m_left; }
    const std::vector<quint32>& right() const { return m_right; }
    quint32 count() const { return m_count; }

private:
    std::vector<quint32> m_left;
    std::vector<quint32> m_right;
    quint32 m_count = 0;
};

/// Collects differences line by line, with what is the same between them.
class Collector
{
public:
    Collector(const TextSnapshot& left, const TextSnapshot& right, qsizetype first)
        : m_left(left),
          m_right(right), m_next{LineStretch{LineIndex(first)}, LineStretch{LineIndex(first)}}
    {}

    void addLeft() { ++m_next.left.count; }
    void addRight() { ++m_next.right.count; }

    /// So many lines of both, which are the same as far as their hashes tell.
    void addSame(qsizetype count)
    {
        const TextRange ours = rangeOf(m_left, {m_next.left.end(), count});
        const TextRange theirs = rangeOf(m_right, {m_next.right.end(), count});
        if (ours.length == theirs.length &&
            commonLength(m_left, ours.location, m_right, theirs.location, ours.length) ==
                ours.length) {
            end(count);
        } else if (count == 1) {
            addLeft();
            addRight();
        } else {
            addSame(count / 2);
            addSame(count - count / 2);
        }
    }

    void end(qsizetype same)
    {
        if (m_next.left.count > 0 || m_next.right.count > 0)
            m_differences.push_back(m_next);
        m_next = {{m_next.left.end() + same}, {m_next.right.end() + same}};
    }

    LineDifferences take() { return std::move(m_differences); }

private:
    const TextSnapshot& m_left;
    const TextSnapshot& m_right;
    LineDifference m_next;
    LineDifferences m_differences;
};

} // namespace

TextRange rangeOf(const TextSnapshot& text, const LineStretch& lines)
{
    return TextRange::between(text.lineStart(lines.first), text.lineStart(lines.end()));
}

std::optional<LineDifferences> lineDifferences(const TextSnapshot& left, const TextSnapshot& right,
                                               const GoesOn& goesOn)
{
    const TextOffset prefix = commonPrefixLength(left, right);
    if (prefix == left.length() && prefix == right.length())
        return LineDifferences();
    // A CR may be a break of its own in one text and half of one in the other.
    const LineIndex first(std::min(left.lineAt(prefix).value(), right.lineAt(prefix).value()));
    const TextOffset start = left.lineStart(first);
    const TextOffset suffix =
        commonSuffixLength(left, right, std::min(left.length(), right.length()) - start);
    // Lines that begin inside of what is the same.
    const qsizetype after =
        suffix == 0 ? 0 : linesOf(left) - left.lineAt(left.length() - suffix).value() - 1;
    const LineStretch ours{first, linesOf(left) - std::max<qsizetype>(0, after) - first.value()};
    const LineStretch theirs{first, linesOf(right) - std::max<qsizetype>(0, after) - first.value()};
    if (ours.count + theirs.count > mostLines)
        return LineDifferences{{ours, theirs}};

    const auto ourHashes = LineHashes::of(left, rangeOf(left, ours), goesOn);
    const auto theirHashes = LineHashes::of(right, rangeOf(right, theirs), goesOn);
    if (goesOn && !goesOn())
        return std::nullopt;
    const Symbols symbols(ourHashes, theirHashes);
    SequenceDifference difference;
    if (!compareSequences(symbols.left(), symbols.right(), symbols.count(), difference, goesOn))
        return std::nullopt;

    Collector collector(left, right, first.value());
    const size_t leftCount = difference.left.size();
    const size_t rightCount = difference.right.size();
    qsizetype blocks = 0;
    for (size_t i = 0, j = 0; i < leftCount || j < rightCount;) {
        for (; i < leftCount && difference.left[i]; ++i)
            collector.addLeft();
        for (; j < rightCount && difference.right[j]; ++j)
            collector.addRight();
        const size_t from = i;
        while (i < leftCount && j < rightCount && !difference.left[i] && !difference.right[j]) {
            ++i;
            ++j;
        }
        if (i > from)
            collector.addSame(qsizetype(i - from));
        if (++blocks % blocksBetweenQuestions == 0 && goesOn && !goesOn())
            return std::nullopt;
    }
    collector.end(0);
    return collector.take();
}

} // namespace quillory
