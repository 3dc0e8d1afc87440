#pragma once

#include "syntax/ColouringState.h"

#include <QStringList>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace quillory {

/// Which spans are open between two lines, as a number below SpanLines::stateCount: for each of up
/// to two pairs of delimiters two bits.
using SpanState = quint8;

/// What some lines make of each state before them.
class SpanTable
{
public:
    /// The states stay as they are.
    SpanTable() = default;
    explicit SpanTable(quint64 value) : m_value(value) {}

    SpanState after(SpanState state) const { return m_value >> 4 * state & 15; }
    void set(SpanState state, SpanState after)
    {
        m_value = (m_value & ~(quint64(15) << 4 * state)) | quint64(after) << 4 * state;
    }

    /// These lines, and then those of \a next.
    SpanTable followedBy(SpanTable next) const;
    quint64 value() const { return m_value; }

private:
    quint64 m_value = 0xFEDCBA9876543210;
};

/// Follows the spans that may go on over lines, instructions or block comments, from line to line.
///
/// Whether an opening of a comment counts depends on the string literals and the single-line
/// comments of its own line; literals that began on an earlier line are not known here, and a
/// comment of the first pair counts as painted over them before it turns out to wrap a script. No
/// delimiter may hold a line break.
class SpanLines
{
public:
    static SpanLines instructions(const ColouringState& state);
    static SpanLines comments(const ColouringState& state);

    /// Nothing ever opens a span.
    bool isIdle() const { return m_needles.isEmpty(); }

    /// Equal for what answers alike.
    const QString& key() const { return m_key; }

    /// A line without any of these leaves every state as it is, unless some states wait.
    const QStringList& needles() const { return m_needles; }
    bool hasWaitingStates() const { return m_pairs[0].mayWrapScript || m_pairs[1].mayWrapScript; }

    static bool isOpen(SpanState state, int pair) { return state >> 2 * pair & 1; }

    /// The last comment may have wrapped a script: the next letter tells, whether after it spans
    /// are open as \a state says, or none of this pair is.
    static bool isWaiting(SpanState state, int pair) { return state >> 2 * pair & 2; }

    /// What the whole lines in \a units make of each state.
    SpanTable table(std::u16string_view units) const;

private:
    struct Pair
    {
        QString begin;
        QString end;
        bool mayWrapScript = false;
    };
    struct PairState
    {
        bool isOpen = false;
        bool isWaiting = false;
    };
    class Line;

    SpanTable lineTable(std::u16string_view line) const;
    PairState after(Line& line, const Pair& pair, PairState state) const;
    void finish(QStringList keyParts);
    bool isWaitingSomewhere(SpanTable table) const;

    std::array<Pair, 2> m_pairs;
    std::optional<ColouringState> m_guards; ///< the literals and comments that hide an opening
    CharacterSet m_letters;
    QString m_key;
    QStringList m_needles;
    std::vector<SpanState> m_states; ///< those that there can be
};

} // namespace quillory
