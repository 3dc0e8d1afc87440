#include "text/TextBuilder.h"

#include "text/LineMetrics.h"

namespace quillory {

namespace {

constexpr size_t leafUnits = size_t(TextLeaf::maximumUnits);

} // namespace

/// Turns pending units into leaves. Unless \a all are asked for, one unit stays back, since the
/// next piece may begin with its other half.
void TextBuilder::flush(bool all)
{
    std::u16string_view rest = m_pending;
    while (rest.size() > leafUnits || (all && !rest.empty())) {
        size_t cut = std::min(rest.size(), leafUnits);
        if (cut < rest.size() && belongTogether(rest[cut - 1], rest[cut]))
            --cut;
        m_leaves.emplace_back(new TextLeaf(rest.substr(0, cut)));
        rest.remove_prefix(cut);
    }
    m_pending.erase(0, m_pending.size() - rest.size());
}

void TextBuilder::append(QStringView string)
{
    m_length += string.size();
    while (!string.isEmpty()) {
        const qsizetype some = std::min<qsizetype>(string.size(), TextLeaf::maximumUnits);
        m_pending.append(reinterpret_cast<const char16_t*>(string.utf16()), size_t(some));
        string = string.sliced(some);
        flush(false);
    }
}

void TextBuilder::append(QLatin1StringView string)
{
    m_length += string.size();
    while (!string.isEmpty()) {
        const qsizetype some = std::min<qsizetype>(string.size(), TextLeaf::maximumUnits);
        const auto* units = reinterpret_cast<const uchar*>(string.data());
        m_pending.append(units, units + some);
        string = string.sliced(some);
        flush(false);
    }
}

void TextBuilder::appendShared(const ByteBuffer& owner, QByteArrayView latin1)
{
    const auto unitAt = [&](qsizetype i) { return char16_t(uchar(latin1[i])); };
    // A short piece, or what is still pending, is copied: leaves that refer to a few bytes each
    // would cost more than the bytes.
    if (m_pending.empty() ? latin1.size() < TextLeaf::minimumUnits
                          : latin1.size() < TextLeaf::maximumUnits) {
        append(QLatin1StringView(latin1));
        return;
    }
    if (!m_pending.empty()) {
        qsizetype head =
            std::max<qsizetype>(0, TextLeaf::minimumUnits - qsizetype(m_pending.size()));
        if (head == 0 && belongTogether(m_pending.back(), unitAt(0)))
            head = 1;
        if (head > 0 && belongTogether(unitAt(head - 1), unitAt(head)))
            ++head;
        append(QLatin1StringView(latin1.first(head)));
        flush(true);
        latin1 = latin1.sliced(head);
    }
    m_length += latin1.size();
    while (latin1.size() >= TextLeaf::maximumUnits) {
        qsizetype cut = TextLeaf::maximumUnits;
        // The last unit is kept back in any case: what follows may belong to it.
        if (cut == latin1.size() || belongTogether(unitAt(cut - 1), unitAt(cut)))
            --cut;
        m_leaves.emplace_back(new TextLeaf(owner, latin1.first(cut)));
        latin1 = latin1.sliced(cut);
    }
    m_length -= latin1.size();
    append(QLatin1StringView(latin1));
}

TextSnapshot TextBuilder::finish()
{
    flush(true);
    m_length = 0;
    return TextSnapshot(treeOfLeaves(std::exchange(m_leaves, {})));
}

} // namespace quillory
