#pragma once

#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace quillory::test {

/// A PDF of that many pages, which say which one they are.
inline void writeSamplePdf(const QString& path, int pages)
{
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::A4));
    QPainter painter(&writer);
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            writer.newPage();
        painter.drawText(500, 500, QStringLiteral("Page number %1").arg(page + 1));
    }
}

} // namespace quillory::test
