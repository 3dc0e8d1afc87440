#pragma once

#include "text/EncodingJudge.h"

#include <vector>

namespace quillory {

/// An encoding and how well bytes fit it.
struct RankedEncoding
{
    StringEncoding encoding = StringEncoding::none;
    qsizetype errors = 0;    ///< places in the sample that are no text in it
    double plausibility = 0; ///< the more the better; see EncodingJudge
};

/// Ranks encodings by how plausible bytes are in them. Bytes that are many are judged by samples:
/// their beginning, and lines with bytes beyond ASCII from all over them.
class EncodingRanking
{
public:
    /// Candidates that cannot be decoded in a stream are left out.
    explicit EncodingRanking(const std::vector<StringEncoding>& candidates);

    bool isEmpty() const { return m_judges.empty(); }
    /// Adds \a bytes, the next of a text, to what is judged.
    void take(QByteArrayView bytes);
    /// Forgets what was taken.
    void clear();
    /// The candidates, the most plausible first; of those that fit alike the most usual first.
    std::vector<RankedEncoding> ranked() const;

private:
    std::vector<EncodingJudge> m_judges;
};

} // namespace quillory
