#pragma once

#include "app/PageMarks.h"
#include "app/PdfFile.h"

#include <QObject>

namespace quillory {

/// Finds a text in a PDF on another thread, some pages at a time.
class PdfSearch : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// In the place of what was searched for before; nothing for an empty needle.
    void start(const std::shared_ptr<PdfFile>& file, const QString& needle);

    const std::vector<PageMarks>& hits() const { return m_hits; }
    bool isRunning() const { return m_file != nullptr; }

Q_SIGNALS:
    /// More was found, or it is over.
    void changed();

private:
    void goOn(int page);

    std::shared_ptr<PdfFile> m_file; ///< while it is searched
    int m_pageCount = 0;
    QString m_needle;
    std::vector<PageMarks> m_hits;
    int m_number = 0; ///< of the search
};

} // namespace quillory
