#pragma once

#include "text/TextSnapshot.h"

#include <string>
#include <vector>

namespace quillory {

/// Puts a text together from its beginning to its end, in pieces of any size, straight into leaves.
/// Pieces may end anywhere, between the halves of a surrogate pair or of a CR LF too.
class TextBuilder
{
public:
    void append(QStringView string);

    /// Code units of 8 bits each (ASCII or ISO Latin 1).
    void append(QLatin1StringView string);

    /// As above, without a copy: \a latin1 lies in \a owner, and the text keeps \a owner alive.
    void appendShared(const ByteBuffer& owner, QByteArrayView latin1);

    TextOffset length() const { return m_length; }

    /// The text so far; the builder is empty afterwards.
    TextSnapshot finish();

private:
    void flush(bool all);

    std::u16string m_pending; ///< units that are not in a leaf yet, at most two leaves' worth
    std::vector<TextNodePointer> m_leaves;
    TextOffset m_length = 0;
};

} // namespace quillory
