#include "app/PdfSearch.h"

#include "foundation/Background.h"

#include <QElapsedTimer>
#include <algorithm>

namespace quillory {

namespace {

constexpr int betweenReports = 100; // milliseconds
constexpr size_t mostHits = 100'000;

struct Found
{
    std::vector<PdfSearch::Hit> hits;
    int nextPage = 0;
};

Found findFrom(PdfFile& file, const QString& needle, int page, int end)
{
    Found found;
    QElapsedTimer elapsed;
    elapsed.start();
    for (; page < end && elapsed.elapsed() < betweenReports; ++page)
        for (const int start : file.find(page, needle))
            found.hits.push_back({page, start});
    found.nextPage = page;
    return found;
}

} // namespace

void PdfSearch::start(const std::shared_ptr<PdfFile>& file, const QString& needle)
{
    ++m_number;
    m_hits.clear();
    m_marks.clear();
    m_asked.clear();
    m_needle = needle;
    m_file = needle.isEmpty() ? nullptr : file;
    m_isRunning = m_file != nullptr;
    m_pageCount = m_file ? int(m_file->pageSizes().size()) : 0;
    if (m_file)
        goOn(0);
    Q_EMIT changed();
}

void PdfSearch::goOn(int page)
{
    runInBackground(
        this,
        [file = m_file, needle = m_needle, page, end = m_pageCount] {
            return findFrom(*file, needle, page, end);
        },
        [this, number = m_number](const Found& found) {
            if (number != m_number)
                return;
            m_hits.insert(m_hits.end(), found.hits.begin(), found.hits.end());
            m_isRunning = found.nextPage < m_pageCount && m_hits.size() < mostHits;
            if (m_isRunning)
                goOn(found.nextPage);
            Q_EMIT changed();
        });
}

std::pair<size_t, size_t> PdfSearch::hitsOf(int page) const
{
    const auto [first, end] =
        std::equal_range(m_hits.begin(), m_hits.end(), Hit{page},
                         [](const Hit& a, const Hit& b) { return a.page < b.page; });
    return {size_t(first - m_hits.begin()), size_t(end - m_hits.begin())};
}

void PdfSearch::locate(int page)
{
    const auto [first, end] = hitsOf(page);
    if (first == end || !m_asked.insert(page).second)
        return;
    std::vector<int> starts;
    starts.reserve(end - first);
    for (size_t i = first; i < end; ++i)
        starts.push_back(m_hits[i].start);
    runInBackground(
        this,
        [file = m_file, page, starts, length = int(m_needle.size())] {
            return file->marks(page, starts, length);
        },
        [this, page, number = m_number](std::vector<PageMarks> marks) {
            if (number != m_number)
                return;
            m_marks[page] = std::move(marks);
            Q_EMIT located(page);
        });
}

std::vector<PageMarks> PdfSearch::marks() const
{
    std::vector<PageMarks> all;
    for (const auto& [page, marks] : m_marks)
        all.insert(all.end(), marks.begin(), marks.end());
    return all;
}

int PdfSearch::markOf(int hit) const
{
    if (hit < 0 || !isLocated(m_hits[size_t(hit)].page))
        return -1;
    const int page = m_hits[size_t(hit)].page;
    size_t before = 0;
    for (auto each = m_marks.begin(); each->first < page; ++each)
        before += each->second.size();
    return int(before + size_t(hit) - hitsOf(page).first);
}

} // namespace quillory
