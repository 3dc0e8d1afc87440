#include "text/SequenceDiff.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace quillory {

namespace {

using Symbols = std::span<const quint32>;

constexpr int stepsBetweenQuestions = 1 << 16;
constexpr qint64 deepestSearch = 4096;  ///< differences looked for from either end
constexpr qint64 shallowestSearch = 32; ///< where the sequences are long

/// A stretch of either sequence.
struct Box
{
    int left;
    int leftEnd;
    int right;
    int rightEnd;
};

struct Point
{
    int left;
    int right;
    bool isExact = true; ///< on a shortest way; else it is only a good place
};

/// How far a search has come on each diagonal (index in the left sequence less that in the right
/// one) of a box, after so many differences.
class Front
{
public:
    Front(int diagonals, int origin) : m_reach(size_t(diagonals)), m_origin(origin) {}

    void begin(int diagonal, int reach)
    {
        m_low = m_high = diagonal;
        (*this)[diagonal] = reach;
    }
    /// One difference more: every second diagonal from low() to high() is to be looked at, whose
    /// neighbours outside of what was reached hold \a nowhere.
    void widen(int lowest, int highest, int nowhere)
    {
        if (m_low > lowest) {
            --m_low;
            (*this)[m_low - 1] = nowhere;
        } else {
            ++m_low;
        }
        if (m_high < highest) {
            ++m_high;
            (*this)[m_high + 1] = nowhere;
        } else {
            --m_high;
        }
    }
    int low() const { return m_low; }
    int high() const { return m_high; }
    bool holds(int diagonal) const { return diagonal >= m_low && diagonal <= m_high; }
    int& operator[](int diagonal)
    {
        const int index = diagonal + m_origin;
        return m_reach[size_t(index)];
    }

private:
    std::vector<int> m_reach; ///< index in the left sequence
    int m_origin;
    int m_low = 0;
    int m_high = 0;
};

class Comparison
{
public:
    Comparison(Symbols left, Symbols right, quint32 symbols, const GoesOn& goesOn, qint64 effort)
        : m_left(left), m_right(right), m_symbols(symbols), m_goesOn(goesOn), m_effort(effort),
          m_forward(int(left.size() + right.size()) + 3, int(right.size()) + 1),
          m_backward(int(left.size() + right.size()) + 3, int(right.size()) + 1),
          m_depth(std::clamp(effort / qint64(4 * (left.size() + right.size() + 1)),
                             shallowestSearch, deepestSearch)),
          m_result{std::vector<bool>(left.size()), std::vector<bool>(right.size())}
    {}

    bool run()
    {
        m_boxes.push_back({0, int(m_left.size()), 0, int(m_right.size())});
        while (!m_boxes.empty()) {
            const Box box = trimmed(m_boxes.back());
            m_boxes.pop_back();
            if (box.left == box.leftEnd || box.right == box.rightEnd || m_effort <= 0) {
                mark(box);
                continue;
            }
            const Point middle = middleOf(box);
            if (m_isCancelled)
                return false;
            if (!middle.isExact && !std::exchange(m_isAnchored, true) && divideByAnchors(box))
                continue;
            m_boxes.push_back({box.left, middle.left, box.right, middle.right});
            m_boxes.push_back({middle.left, box.leftEnd, middle.right, box.rightEnd});
        }
        return true;
    }

    SequenceDifference takeResult() { return std::move(m_result); }

private:
    Box trimmed(Box box) const
    {
        while (box.left < box.leftEnd && box.right < box.rightEnd &&
               m_left[size_t(box.left)] == m_right[size_t(box.right)]) {
            ++box.left;
            ++box.right;
        }
        while (box.left < box.leftEnd && box.right < box.rightEnd &&
               m_left[size_t(box.leftEnd) - 1] == m_right[size_t(box.rightEnd) - 1]) {
            --box.leftEnd;
            --box.rightEnd;
        }
        return box;
    }

    void mark(const Box& box)
    {
        std::fill(m_result.left.begin() + box.left, m_result.left.begin() + box.leftEnd, true);
        std::fill(m_result.right.begin() + box.right, m_result.right.begin() + box.rightEnd, true);
    }

    /// A point in the middle of a shortest way from one corner of \a box to the other, neither of
    /// which it is; where the ways are long, the furthest that was come to.
    Point middleOf(const Box& box)
    {
        const int lowest = box.left - box.rightEnd;
        const int highest = box.leftEnd - box.right;
        const int first = box.left - box.right;
        const int last = box.leftEnd - box.rightEnd;
        const bool isOdd = ((first - last) & 1) != 0;
        m_forward.begin(first, box.left);
        m_backward.begin(last, box.leftEnd);
        for (qint64 depth = 1;; ++depth) {
            m_forward.widen(lowest, highest, -1);
            for (int k = m_forward.high(); k >= m_forward.low(); k -= 2) {
                const int x = goForward(box, k);
                if (isOdd && m_backward.holds(k) && m_backward[k] <= x)
                    return {x, x - k};
            }
            m_backward.widen(lowest, highest, std::numeric_limits<int>::max());
            for (int k = m_backward.high(); k >= m_backward.low(); k -= 2) {
                const int x = goBackward(box, k);
                if (!isOdd && m_forward.holds(k) && x <= m_forward[k])
                    return {x, x - k};
            }
            if (depth >= m_depth || !mayGoOn())
                return furthest(box);
        }
    }

    int goForward(const Box& box, int diagonal)
    {
        int x = std::max(m_forward[diagonal - 1] + 1, m_forward[diagonal + 1]);
        const int from = x;
        while (x < box.leftEnd && x - diagonal < box.rightEnd &&
               m_left[size_t(x)] == m_right[size_t(x - diagonal)])
            ++x;
        m_steps += x - from + 1;
        return m_forward[diagonal] = x;
    }

    int goBackward(const Box& box, int diagonal)
    {
        int x = std::min(m_backward[diagonal - 1], m_backward[diagonal + 1] - 1);
        const int from = x;
        while (x > box.left && x - diagonal > box.right &&
               m_left[size_t(x) - 1] == m_right[size_t(x - diagonal) - 1])
            --x;
        m_steps += from - x + 1;
        return m_backward[diagonal] = x;
    }

    Point furthest(const Box& box)
    {
        Point ahead{box.left, box.right, false};
        for (int k = m_forward.low(); k <= m_forward.high(); ++k) {
            const int x = std::min(m_forward[k], box.leftEnd);
            const int y = x - k;
            if (x >= box.left && y >= box.right && y <= box.rightEnd &&
                x + y > ahead.left + ahead.right)
                ahead = {x, y, false};
        }
        Point behind{box.leftEnd, box.rightEnd, false};
        for (int k = m_backward.low(); k <= m_backward.high(); ++k) {
            const int x = std::max(m_backward[k], box.left);
            const int y = x - k;
            if (x <= box.leftEnd && y >= box.right && y <= box.rightEnd &&
                x + y < behind.left + behind.right)
                behind = {x, y, false};
        }
        const int gone = ahead.left + ahead.right - box.left - box.right;
        const int come = box.leftEnd + box.rightEnd - behind.left - behind.right;
        return gone >= come ? ahead : behind;
    }

    bool mayGoOn()
    {
        if (m_steps < stepsBetweenQuestions)
            return true;
        m_effort -= std::exchange(m_steps, 0);
        m_isCancelled = m_goesOn && !m_goesOn();
        return !m_isCancelled && m_effort > 0;
    }

    /// Divides \a box at the symbols that occur once on either side, as many as stand in the same
    /// order; false where there are none.
    bool divideByAnchors(const Box& box)
    {
        struct Place
        {
            int left = 0;
            int right = 0;
            int timesLeft = 0;
            int timesRight = 0;
        };
        std::vector<Place> places(m_symbols);
        for (int x = box.left; x < box.leftEnd; ++x) {
            Place& place = places[m_left[size_t(x)]];
            place.left = x;
            ++place.timesLeft;
        }
        for (int y = box.right; y < box.rightEnd; ++y) {
            Place& place = places[m_right[size_t(y)]];
            place.right = y;
            ++place.timesRight;
        }
        std::vector<Point> once;
        for (int x = box.left; x < box.leftEnd; ++x) {
            const Place& place = places[m_left[size_t(x)]];
            if (place.timesLeft == 1 && place.timesRight == 1)
                once.push_back({x, place.right});
        }
        const std::vector<Point> anchors = longestAscent(once);
        Point from{box.left, box.right};
        for (const Point& anchor : anchors) {
            m_boxes.push_back({from.left, anchor.left, from.right, anchor.right});
            from = {anchor.left + 1, anchor.right + 1};
        }
        m_boxes.push_back({from.left, box.leftEnd, from.right, box.rightEnd});
        return !anchors.empty();
    }

    /// The most of \a points, which ascend on the left, that ascend on the right too.
    static std::vector<Point> longestAscent(const std::vector<Point>& points)
    {
        std::vector<int> ends; ///< of the best ascents of each length
        std::vector<int> before(points.size(), -1);
        for (int i = 0; i < int(points.size()); ++i) {
            const auto end = std::partition_point(ends.begin(), ends.end(), [&](int index) {
                return points[size_t(index)].right < points[size_t(i)].right;
            });
            if (end != ends.begin())
                before[size_t(i)] = *(end - 1);
            if (end == ends.end())
                ends.push_back(i);
            else
                *end = i;
        }
        std::vector<Point> ascent;
        for (int i = ends.empty() ? -1 : ends.back(); i >= 0; i = before[size_t(i)])
            ascent.push_back(points[size_t(i)]);
        std::reverse(ascent.begin(), ascent.end());
        return ascent;
    }

    const Symbols m_left;
    const Symbols m_right;
    const quint32 m_symbols;
    const GoesOn& m_goesOn;
    qint64 m_effort; ///< steps that are left
    qint64 m_steps = 0;
    Front m_forward;
    Front m_backward;
    const qint64 m_depth;
    std::vector<Box> m_boxes; ///< to be compared
    SequenceDifference m_result;
    bool m_isAnchored = false;
    bool m_isCancelled = false;
};

/// Those of \a symbols that also occur where \a elsewhere counts, with their places.
struct Common
{
    Common(Symbols symbols, const std::vector<bool>& elsewhere)
    {
        for (size_t i = 0; i < symbols.size(); ++i) {
            if (!elsewhere[symbols[i]])
                continue;
            kept.push_back(symbols[i]);
            places.push_back(quint32(i));
        }
    }
    std::vector<quint32> kept;
    std::vector<quint32> places;
};

std::vector<bool> occurring(Symbols symbols, quint32 count)
{
    std::vector<bool> found(count);
    for (const quint32 symbol : symbols)
        found[symbol] = true;
    return found;
}

/// Where the symbols that were left out count as different.
std::vector<bool> expanded(const std::vector<bool>& different, const Common& common, size_t size)
{
    std::vector<bool> whole(size, true);
    for (size_t i = 0; i < different.size(); ++i)
        whole[common.places[i]] = different[i];
    return whole;
}

} // namespace

bool compareSequences(std::span<const quint32> left, std::span<const quint32> right,
                      quint32 symbols, SequenceDifference& difference, const GoesOn& goesOn,
                      qint64 effort)
{
    const Common ours(left, occurring(right, symbols));
    const Common theirs(right, occurring(left, symbols));
    Comparison comparison(ours.kept, theirs.kept, symbols, goesOn, effort);
    if (!comparison.run())
        return false;
    const SequenceDifference found = comparison.takeResult();
    difference.left = expanded(found.left, ours, left.size());
    difference.right = expanded(found.right, theirs, right.size());
    return true;
}

} // namespace quillory
