#include "document/TECSniffer.h"

#include "document/WebEncodings.h"

#include <QtDebug>
#include <algorithm>

namespace quillory {

std::optional<TECSniffer> TECSniffer::init()
{
    std::vector<StringEncoding> candidates;
    for (const EncodingInfo& info : knownEncodings())
        candidates.push_back(info.encoding);
    return among(candidates);
}

std::optional<TECSniffer> TECSniffer::initWithWebTextEncodings(const QLocale& locale)
{
    return among(webTextEncodings(locale));
}

std::optional<TECSniffer> TECSniffer::among(const std::vector<StringEncoding>& candidates)
{
    TECSniffer sniffer(candidates);
    if (sniffer.m_sniffer.isEmpty())
        return std::nullopt;
    return sniffer;
}

QList<StringEncoding> TECSniffer::sniff(QByteArrayView bytes)
{
    QList<StringEncoding> encodings;
    for (const RankedEncoding& each : ranked(bytes))
        encodings.append(each.encoding);
    return encodings;
}

std::vector<RankedEncoding> TECSniffer::ranked(QByteArrayView bytes)
{
    m_sniffer.take(bytes);
    std::vector<RankedEncoding> result = m_sniffer.ranked();
    if (std::all_of(result.begin(), result.end(),
                    [](const RankedEncoding& each) { return each.errors > 0; }))
        qWarning("TECSniffer - sniff: / Failed to sniff text encoding.");
    return result;
}

} // namespace quillory
