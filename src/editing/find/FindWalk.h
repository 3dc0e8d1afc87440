#pragma once

#include "syntax/regex/ICUPattern.h"
#include "text/TextSnapshot.h"

#include <atomic>
#include <optional>

namespace quillory {

/// Goes through what matches a pattern in a text, from first to last. On one thread at a time,
/// which may be any. Offsets are UTF-16 code units.
///
/// No more of the text than a window is in memory twice. One grows as long as what follows it could
/// make a match another one, up to \a largestWindow; a match that is longer ends there, or, where
/// it cannot, is found only if it begins in the window's last \a overlap units.
class FindWalk
{
public:
    static constexpr TextOffset window = TextOffset(1) << 18;
    static constexpr TextOffset largestWindow = TextOffset(1) << 26;
    static constexpr TextOffset overlap = TextOffset(1) << 16;

    /// Finds what begins at \a from or after it, and nothing more once it \a givesUp, which
    /// outlives this. The pattern is this walk's own.
    FindWalk(TextSnapshot text, std::shared_ptr<ICUPattern> pattern, TextOffset from = 0,
             const std::atomic_bool* givesUp = nullptr);

    /// Goes to the next match, which may be empty; none where there is no more. Throws "Find
    /// Exception".
    std::optional<TextRange> next();
    /// Where what is left begins.
    TextOffset position() const { return m_at; }
    /// The text of a group of the last match, "" where it has no part in it; none where the
    /// pattern has no such group.
    std::optional<QString> group(int number) const;
    /// The number of a group with a name; 0 where there is none.
    int groupNamed(const QString& name) const;

private:
    void takeWindow(TextOffset length);
    bool isInWindow() const { return m_at >= m_base && m_at <= m_end && m_end > m_base; }

    TextSnapshot m_text;
    std::shared_ptr<ICUPattern> m_pattern;
    TextOffset m_at;
    TextOffset m_base = 0; ///< of the window
    TextOffset m_end = 0;
    bool m_isOver = false;
    const std::atomic_bool* m_givesUp;
};

} // namespace quillory
