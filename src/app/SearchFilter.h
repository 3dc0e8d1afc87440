#pragma once

#include <QStringList>
#include <optional>
#include <vector>

namespace quillory {

/// Finds rows by what was typed of them: a row has all of the words, or at least all characters in
/// their order. Case does not count. Those come first that begin with what was typed, then those
/// with a word that does, then those that have it anywhere, then those that only have the
/// characters, the closer together the better; among equals the order stays.
class SearchFilter
{
public:
    /// The rows to search in; what was found is forgotten.
    void setRows(const QStringList& rows);

    /// The numbers of the rows that match; all of them where \a typed is blank. Where it only goes
    /// on after what was typed last, only the rows found then are looked at.
    const std::vector<int>& find(const QString& typed);

private:
    QStringList m_folded;
    QString m_typed;
    std::vector<int> m_found; ///< for m_typed
};

} // namespace quillory
