#pragma once

#include <QStringList>
#include <optional>
#include <vector>

namespace quillory {

/// Finds rows by what was typed of them: rows that have all of the words or, where there is none,
/// those that have at least all characters in their order. Case does not count. Those come first
/// that begin with what was typed, then those with a word that does, then those that have it
/// anywhere; of those that only have the characters, the closer together the better. Among equals
/// the order stays.
class SearchFilter
{
public:
    /// The rows to search in; what was found is forgotten.
    void setRows(const QStringList& rows);

    /// The numbers of the rows that match; all of them where \a typed is blank. Where it only goes
    /// on after what was typed last, only rows that could match then are looked at.
    const std::vector<int>& find(const QString& typed);

private:
    void listAll();

    QStringList m_folded;
    QString m_typed;
    std::vector<int> m_candidates; ///< for whatever begins with m_typed
    std::vector<int> m_found;      ///< for m_typed
};

} // namespace quillory
