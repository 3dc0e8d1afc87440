#include "document/EncodingList.h"

#include "foundation/PropertyListReader.h"

namespace quillory {

void EncodingList::load(const QString& path)
{
    m_entries.clear();
    const Result<StoredPropertyList> stored = readPropertyListFile(path);
    if (!stored)
        return;
    const QString number = QStringLiteral("number");
    for (const PropertyList& entry : stored->list.toArray()) {
        if (entry.contains(number))
            m_entries.push_back({StringEncoding(quint32(entry[number].toInteger())),
                                 entry[QStringLiteral("name")].toString()});
    }
}

std::vector<EncodingEntry> EncodingList::arranged() const
{
    if (!m_filter)
        return m_entries;
    std::vector<EncodingEntry> entries;
    std::copy_if(m_entries.begin(), m_entries.end(), std::back_inserter(entries),
                 [&](const EncodingEntry& entry) { return entry.number == *m_filter; });
    return entries;
}

void EncodingList::selectNumber(StringEncoding number)
{
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const EncodingEntry& e) { return e.number == number; });
    if (entry == m_entries.end()) {
        m_filter = number;
        m_selection = 0;
        return;
    }
    m_filter.reset();
    m_selection = entry - m_entries.begin();
}

std::optional<EncodingEntry> EncodingList::selected() const
{
    const std::vector<EncodingEntry> entries = arranged();
    if (m_selection < 0 || m_selection >= qsizetype(entries.size()))
        return std::nullopt;
    return entries[size_t(m_selection)];
}

} // namespace quillory
