#include "text/EncodingRanking.h"

#include "text/ByteEvidence.h"

#include <algorithm>

namespace quillory {

namespace {

/// Natural logarithms of how usual an encoding is beside UTF-8. They decide between encodings in
/// which bytes mean the same, and for texts of a few words.
double usualness(StringEncoding encoding)
{
    struct Rate
    {
        quint32 number;
        double log;
    };
    static constexpr Rate rates[] = {
        {quint32(StringEncoding::utf8), 0},
        {quint32(StringEncoding::ascii), -0.5},
        {quint32(StringEncoding::windowsLatin1), -1},
        {quint32(StringEncoding::isoLatin1), -0.9},
        {quint32(StringEncoding::shiftJis), -1.2},
        {0x80000632, -1.2}, // GB 18030
        {0x80000a03, -1.2}, // Big 5
        {0x80000940, -1.2}, // EUC-KR
        {11, -1.2},         // Cyrillic (Windows)
        {3, -1.2},          // EUC-JP
        {quint32(StringEncoding::iso2022Jp), -1.2},
        {15, -3},           // Central European (Windows)
        {13, -2.5},         // Greek (Windows)
        {14, -3},           // Turkish (Windows)
        {0x80000505, -2},   // Hebrew (Windows)
        {0x80000506, -2},   // Arabic (Windows)
        {0x8000041d, -1.2}, // Thai (Windows)
        {0x80000a02, -1.5}, // KOI8-R
        {0x80000507, -5},   // Baltic (Windows)
        {0x80000a08, -1.6}, // KOI8-U
        {quint32(StringEncoding::utf16), -1.5},
        {quint32(StringEncoding::utf16LittleEndian), -4},
        {quint32(StringEncoding::utf16BigEndian), -4.5},
        {9, -3.6},          // Central European (ISO)
        {0x80000205, -3},   // Cyrillic (ISO)
        {0x80000207, -3.6}, // Greek (ISO)
        {0x80000209, -3.6}, // Turkish (ISO)
        {0x80000208, -4},   // Hebrew (ISO)
        {0x80000206, -4},   // Arabic (ISO)
        {0x8000020b, -2},   // Thai (ISO)
        {0x8000020f, -2.5}, // ISO Latin 9
        {0x80000508, -4},   // Vietnamese (Windows)
        {0x80000631, -2},   // GBK
        {0x80000421, -2.1},
        {0x80000930, -2.5}, // GB 2312
        {0x80000422, -2},   // Korean (Windows)
        {0x80000a06, -2.5}, // Big 5 HKSCS
        {0x80000a01, -2.5}, // Shift JIS
        {quint32(StringEncoding::iso2022Kr), -2},
        {quint32(StringEncoding::hz), -2},
        {0x8000041b, -3},   // Russian (DOS)
        {30, -4},           // Western (Mac OS)
        {0x80000410, -4.5}, // Western (DOS)
        {quint32(StringEncoding::utf7), -12},
        {quint32(StringEncoding::nextStep), -12},
    };
    const auto* rate = std::find_if(std::begin(rates), std::end(rates), [&](const Rate& each) {
        return each.number == quint32(encoding);
    });
    return rate != std::end(rates) ? rate->log : -7;
}

} // namespace

EncodingRanking::EncodingRanking(const std::vector<StringEncoding>& candidates)
{
    m_judges.reserve(candidates.size());
    for (const StringEncoding candidate : candidates) {
        const EncodingInfo* info = encodingInfo(candidate);
        if (info && StreamDecoder::canDecode(*info))
            m_judges.emplace_back(*info);
    }
}

void EncodingRanking::take(QByteArrayView bytes)
{
    const QByteArray sample = sampleOf(bytes);
    // What lies between two samples is missing from the beginning of the second, so units of two or
    // four bytes would not be such.
    const QByteArrayView beginning = bytes.first(std::min(bytes.size(), sample.size()));
    for (EncodingJudge& judge : m_judges) {
        const EncodingForm form = encodingInfo(judge.encoding())->form;
        const bool isWide = form == EncodingForm::utf16 || form == EncodingForm::utf32;
        judge.take(isWide ? beginning : QByteArrayView(sample));
    }
}

void EncodingRanking::clear()
{
    for (EncodingJudge& judge : m_judges)
        judge.clear();
}

std::vector<RankedEncoding> EncodingRanking::ranked() const
{
    std::vector<RankedEncoding> result;
    result.reserve(m_judges.size());
    for (const EncodingJudge& judge : m_judges) {
        const StringEncoding encoding = judge.encoding();
        result.push_back({encoding, judge.errors(), judge.plausibility() + usualness(encoding)});
    }
    std::stable_sort(result.begin(), result.end(),
                     [](const RankedEncoding& a, const RankedEncoding& b) {
                         return a.plausibility > b.plausibility;
                     });
    return result;
}

} // namespace quillory
