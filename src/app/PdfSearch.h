#pragma once

#include "app/PdfFile.h"

#include <QObject>
#include <map>
#include <set>

namespace quillory {

/// Finds a text in a PDF on another thread, some pages at a time, and where it stands on those that
/// are in sight.
class PdfSearch : public QObject
{
    Q_OBJECT

public:
    struct Hit
    {
        int page = 0;  ///< from 0
        int start = 0; ///< in the page's text
    };

    using QObject::QObject;

    /// In the place of what was searched for before; nothing for an empty needle.
    void start(const std::shared_ptr<PdfFile>& file, const QString& needle);

    /// In order.
    const std::vector<Hit>& hits() const { return m_hits; }
    bool isRunning() const { return m_isRunning; }

    /// Looks where the hits of \a page stand, unless that is known.
    void locate(int page);
    bool isLocated(int page) const { return m_marks.contains(page); }
    /// Of the pages whose hits were located, in order, one for each hit.
    std::vector<PageMarks> marks() const;
    /// Which of these marks is that of a hit; -1 where it was not located.
    int markOf(int hit) const;

Q_SIGNALS:
    /// More was found, or it is over.
    void changed();
    void located(int page);

private:
    void goOn(int page);
    std::pair<size_t, size_t> hitsOf(int page) const;

    std::shared_ptr<PdfFile> m_file;
    int m_pageCount = 0;
    QString m_needle;
    bool m_isRunning = false;
    std::vector<Hit> m_hits;
    std::map<int, std::vector<PageMarks>> m_marks; ///< by page
    std::set<int> m_asked;                         ///< pages that are located
    int m_number = 0;                              ///< of the search
};

} // namespace quillory
