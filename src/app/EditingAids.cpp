#include "app/EditingAids.h"

#include "app/DocumentWindow.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QApplication>

namespace quillory {

void connectEditingAids(DocumentWindow& window)
{
    Document& document = window.document();
    TextViewWidget& view = window.view();
    // After the text view has scrolled to the caret.
    QObject::connect(&document.changeTracking(), &ChangeTracking::findIndicatorRequested, &view,
                     &TextViewWidget::showFindIndicatorForRange, Qt::QueuedConnection);
    QObject::connect(&document.textView(), &QPTextView::beep, &view, [] { QApplication::beep(); });
}

} // namespace quillory
