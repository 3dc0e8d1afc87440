#include "document/EncodingList.h"

#include "foundation/PropertyListReader.h"

#include <algorithm>
#include <utility>

namespace quillory {

void EncodingList::load(const QString& path)
{
    m_entries.clear();
    m_unread = path;
}

void EncodingList::readEntries() const
{
    const Result<StoredPropertyList> stored = readPropertyListFile(*m_unread);
    m_unread.reset();
    if (!stored)
        return;
    const QString number = QStringLiteral("number");
    for (const PropertyList& entry : stored->list.toArray()) {
        if (entry.contains(number))
            m_entries.push_back({StringEncoding(quint32(entry[number].toInteger())),
                                 entry[QStringLiteral("name")].toString()});
    }
}

/// Does what was put off until the list is looked at.
void EncodingList::settle() const
{
    if (m_unread)
        readEntries();
    if (!m_wanted)
        return;
    const StringEncoding number = *std::exchange(m_wanted, std::nullopt);
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const EncodingEntry& e) { return e.number == number; });
    const bool isListed = entry != m_entries.end();
    m_filter = isListed ? std::nullopt : std::optional(number);
    m_selection = isListed ? entry - m_entries.begin() : 0;
}

const std::vector<EncodingEntry>& EncodingList::entries() const
{
    settle();
    return m_entries;
}

std::vector<EncodingEntry> EncodingList::arranged() const
{
    settle();
    if (!m_filter)
        return m_entries;
    std::vector<EncodingEntry> arranged;
    std::copy_if(m_entries.begin(), m_entries.end(), std::back_inserter(arranged),
                 [&](const EncodingEntry& entry) { return entry.number == *m_filter; });
    return arranged;
}

void EncodingList::selectNumber(StringEncoding number)
{
    m_wanted = number;
}

void EncodingList::selectIndex(qsizetype index)
{
    settle();
    m_selection = index;
}

qsizetype EncodingList::selectionIndex() const
{
    settle();
    return m_selection;
}

std::optional<EncodingEntry> EncodingList::selected() const
{
    const std::vector<EncodingEntry> entries = arranged();
    if (m_selection < 0 || m_selection >= qsizetype(entries.size()))
        return std::nullopt;
    return entries[size_t(m_selection)];
}

} // namespace quillory
