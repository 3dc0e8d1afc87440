#include "syntax/DefinitionList.h"

#include "syntax/DefinitionHeads.h"
#include "syntax/PropertyListFolder.h"

#include <QFileInfo>
#include <algorithm>

namespace quillory {

namespace {

template<class Iterator, class Fits>
qsizetype indexOf(Iterator begin, Iterator end, Fits&& fits)
{
    const Iterator found = std::find_if(begin, end, fits);
    return found == end ? -1 : found - begin;
}

auto lists(const QString& extension)
{
    return [&](const Definition& d) { return d.extensions().contains(extension); };
}

} // namespace

void DefinitionList::load(const QString& folder, const QString& shipped, const QString& heads)
{
    m_definitions.clear();
    m_faults.clear();
    m_selection = -1;
    m_definitions.reserve(25);
    DefinitionHeads known(heads, folder);
    for (const QString& path : propertyListPathsBelow(folder)) {
        const QFileInfo info(path);
        if (std::optional<PropertyList> head = known.head(info)) {
            m_definitions.push_back(Definition::ofHead(std::move(*head), path, known.copyOf(info)));
        } else {
            PropertyListFile file = propertyListAt(path);
            if (!file.problem.isEmpty()) {
                m_faults.push_back({info.fileName(), {}, file.problem});
                continue;
            }
            m_definitions.emplace_back(std::move(file.dictionary), path);
            known.remember(info, m_definitions.back().head());
        }
        const std::vector<DefinitionFault> faults = m_definitions.back().identityFaults();
        m_faults.insert(m_faults.end(), faults.begin(), faults.end());
    }
    known.save();
    if (indexOfPlainText() < 0)
        addPlainText(shipped);
    rearrangeObjects();
}

void DefinitionList::rearrangeObjects()
{
    const auto inOrder = [](const Definition& a, const Definition& b) {
        return a.title() < b.title();
    };
    // Whoever holds the selected one keeps it where there is nothing to move.
    if (std::is_sorted(m_definitions.begin(), m_definitions.end(), inOrder))
        return;
    const QString path = selected() ? selected()->path() : QString();
    std::stable_sort(m_definitions.begin(), m_definitions.end(), inOrder);
    if (m_selection >= 0)
        m_selection = indexOf(m_definitions.begin(), m_definitions.end(),
                              [&](const Definition& d) { return d.path() == path; });
}

void DefinitionList::addPlainText(const QString& shipped)
{
    const QString title(Definition::plainText);
    PropertyListFile file = propertyListAt(shipped + QStringLiteral("/%1.plist").arg(title));
    Definition found(std::move(file.dictionary), file.path);
    if (file.problem.isEmpty() && found.title() == title)
        m_definitions.push_back(std::move(found));
    else
        m_definitions.emplace_back(
            PropertyList::Dictionary{{QStringLiteral("title"), QString(title)}}, QString());
}

qsizetype DefinitionList::indexForExtension(const QString& extension) const
{
    return indexOf(m_definitions.begin(), m_definitions.end(), lists(extension));
}

qsizetype DefinitionList::lastIndexForExtension(const QString& extension) const
{
    const qsizetype fromEnd =
        indexOf(m_definitions.rbegin(), m_definitions.rend(), lists(extension));
    return fromEnd < 0 ? -1 : qsizetype(m_definitions.size()) - 1 - fromEnd;
}

qsizetype DefinitionList::indexOfDefault() const
{
    return indexOf(m_definitions.begin(), m_definitions.end(),
                   [](const Definition& d) { return d.isDefault(); });
}

qsizetype DefinitionList::indexForTitle(QStringView title) const
{
    return indexOf(m_definitions.begin(), m_definitions.end(),
                   [&](const Definition& d) { return d.title() == title; });
}

void DefinitionList::setSelectionIndex(qsizetype index)
{
    m_selection = index >= 0 && index < qsizetype(m_definitions.size()) ? index : -1;
}

const Definition* DefinitionList::selected() const
{
    return m_selection < 0 ? nullptr : &m_definitions[size_t(m_selection)];
}

} // namespace quillory
