#include "app/SearchFilter.h"

#include <algorithm>
#include <numeric>

namespace quillory {

namespace {

constexpr int atStart = 0;
constexpr int atWord = 1;
constexpr int inside = 2;
constexpr int scattered = 1000; ///< and the length of the stretch

int rankOfWord(QStringView row, QStringView word)
{
    qsizetype at = row.indexOf(word);
    if (at <= 0)
        return at == 0 ? atStart : scattered;
    for (; at >= 0; at = row.indexOf(word, at + 1)) {
        if (!row[at - 1].isLetterOrNumber())
            return atWord;
    }
    return inside;
}

/// How long the stretch is, from the first place on, that has the characters of \a typed in order.
std::optional<int> scatteredLength(QStringView row, QStringView typed)
{
    qsizetype first = -1;
    qsizetype next = 0;
    for (const QChar unit : typed) {
        if (unit.isSpace())
            continue;
        const qsizetype at = row.indexOf(unit, next);
        if (at < 0)
            return std::nullopt;
        if (first < 0)
            first = at;
        next = at + 1;
    }
    return int(next - first);
}

/// Less is better; none where \a row does not match.
std::optional<int> rank(QStringView row, QStringView typed, const QList<QStringView>& words)
{
    int sum = 0;
    for (const QStringView word : words)
        sum += rankOfWord(row, word);
    if (sum < scattered)
        return sum;
    const std::optional<int> length = scatteredLength(row, typed);
    return length ? std::optional(scattered + *length) : std::nullopt;
}

} // namespace

void SearchFilter::setRows(const QStringList& rows)
{
    m_folded.clear();
    m_folded.reserve(rows.size());
    for (const QString& row : rows)
        m_folded.append(row.toCaseFolded());
    m_typed.clear();
    listAll();
}

void SearchFilter::listAll()
{
    m_candidates.resize(size_t(m_folded.size()));
    std::iota(m_candidates.begin(), m_candidates.end(), 0);
    m_found = m_candidates;
}

const std::vector<int>& SearchFilter::find(const QString& typed)
{
    const QString folded = typed.toCaseFolded();
    if (folded == m_typed)
        return m_found;
    if (!folded.startsWith(m_typed))
        listAll();
    m_typed = folded;
    const QList<QStringView> words = QStringView(folded).split(u' ', Qt::SkipEmptyParts);
    if (words.isEmpty())
        return m_found;

    std::vector<std::pair<int, int>> ranked; // the row second, so that equals keep their order
    ranked.reserve(m_candidates.size());
    for (const int row : m_candidates) {
        if (const std::optional<int> found = rank(m_folded[row], folded, words))
            ranked.emplace_back(*found, row);
    }
    std::sort(ranked.begin(), ranked.end());
    m_candidates.resize(ranked.size());
    std::transform(ranked.begin(), ranked.end(), m_candidates.begin(),
                   [](const auto& entry) { return entry.second; });
    const auto whole =
        std::partition_point(ranked.begin(), ranked.end(),
                             [](const auto& entry) { return entry.first < scattered; }) -
        ranked.begin();
    m_found.assign(m_candidates.begin(),
                   whole > 0 ? m_candidates.begin() + whole : m_candidates.end());
    return m_found;
}

} // namespace quillory
