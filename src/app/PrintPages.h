#pragma once

#include "app/PageSource.h"
#include "app/QPPrintableTextView.h"

#include <QElapsedTimer>
#include <QPageLayout>

namespace quillory {

/// The pages that printing a text would make, to be looked at. Where they begin is found once; each
/// is laid out anew when it is drawn, so memory does not grow with their number.
class PrintPages : public PageSource
{
public:
    /// Told how many pages were found, and whether these are all; on a thread of the pool, a few
    /// times a second.
    using Found = std::function<void(int pages, bool areAll)>;

    PrintPages(const QPPrintableTextView::Job& job, const QPageLayout& layout, Found found);

    void prepare(const std::function<bool()>& meanwhile) override;
    QImage render(int page, double scale, const QRect& part) override;

private:
    QPPrintableTextView m_view;
    QPageLayout m_layout;
    Found m_found;
    QElapsedTimer m_sinceTold;
};

} // namespace quillory
