#include "app/PdfSearch.h"

#include "foundation/Background.h"

namespace quillory {

namespace {

constexpr int pagesAtOnce = 64;
constexpr size_t mostHits = 100'000;

} // namespace

void PdfSearch::start(const std::shared_ptr<PdfFile>& file, const QString& needle)
{
    ++m_number;
    m_hits.clear();
    m_needle = needle;
    m_file = needle.isEmpty() ? nullptr : file;
    m_pageCount = m_file ? int(m_file->pageSizes().size()) : 0;
    if (m_file)
        goOn(0);
    Q_EMIT changed();
}

void PdfSearch::goOn(int page)
{
    const int end = std::min(m_pageCount, page + pagesAtOnce);
    runInBackground(
        this,
        [file = m_file, needle = m_needle, page, end] { return file->find(needle, page, end); },
        [this, end, number = m_number](const std::vector<PageMarks>& found) {
            if (number != m_number)
                return;
            m_hits.insert(m_hits.end(), found.begin(), found.end());
            if (end < m_pageCount && m_hits.size() < mostHits)
                goOn(end);
            else
                m_file.reset();
            Q_EMIT changed();
        });
}

} // namespace quillory
