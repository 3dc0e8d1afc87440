#pragma once

#include "editing/find/FindQuery.h"
#include "text/TextSnapshot.h"

#include <atomic>
#include <functional>
#include <vector>

namespace quillory {

/// The places that begin in a stretch of a text, in order.
struct FindBatch
{
    TextRange stretch;
    std::vector<TextRange> found = {};
    bool isLast = false;
    bool isCutShort = false; ///< there are more than were to be found
    bool isFailed = false;   ///< the expression takes too long
};

/// Finds all places that match in a text: from an offset on, and then those before it. On a thread
/// that may take its time.
class FindJob
{
public:
    using Report = std::function<void(FindBatch)>;

    static constexpr int batchTime = 30; ///< milliseconds between two reports

    /// Nothing is found beyond \a most places. \a pattern is not changed.
    FindJob(TextSnapshot text, std::shared_ptr<ICUPattern> pattern, TextOffset origin, size_t most);

    /// Reports stretch after stretch; the last one as such, unless it is \a cancelled.
    void run(const std::atomic_bool& cancelled, const Report& report);

private:
    bool findIn(TextRange part, const std::atomic_bool& cancelled, const Report& report);

    TextSnapshot m_text;
    std::shared_ptr<ICUPattern> m_pattern;
    TextOffset m_origin;
    size_t m_most;
    size_t m_count = 0;
};

} // namespace quillory
