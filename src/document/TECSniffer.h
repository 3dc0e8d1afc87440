#pragma once

#include "text/EncodingRanking.h"

#include <QList>
#include <QLocale>
#include <optional>

namespace quillory {

/// Ranks encodings by how plausible bytes are in them. What one call was given stays in mind until
/// clear(), so that a text can be shown in pieces.
class TECSniffer
{
public:
    /// Among every encoding that can be converted; nothing where there is none.
    static std::optional<TECSniffer> init();
    /// Among the encodings of the web where \a locale is spoken.
    static std::optional<TECSniffer> initWithWebTextEncodings(const QLocale& locale = QLocale());

    /// All candidates, the most plausible first. Of more than 4 KB, samples are looked at.
    QList<StringEncoding> sniff(QByteArrayView bytes);
    /// The same with what speaks against each.
    std::vector<RankedEncoding> ranked(QByteArrayView bytes);
    /// The next bytes are judged afresh.
    void clear() { m_sniffer.clear(); }

private:
    explicit TECSniffer(const std::vector<StringEncoding>& candidates) : m_sniffer(candidates) {}
    static std::optional<TECSniffer> among(const std::vector<StringEncoding>& candidates);

    EncodingRanking m_sniffer;
};

} // namespace quillory
