#include "app/PrintSetup.h"

#include "app/QPPrintableTextView.h"

#include <QLocale>

namespace quillory {

QPageLayout PrintSetup::usualLayout()
{
    const bool isImperial = QLocale().measurementSystem() == QLocale::ImperialUSSystem;
    return {QPageSize(isImperial ? QPageSize::Letter : QPageSize::A4), QPageLayout::Portrait,
            QPPrintableTextView::margins, QPageLayout::Point};
}

} // namespace quillory
