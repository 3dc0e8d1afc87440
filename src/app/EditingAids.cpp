#include "app/EditingAids.h"

#include "app/DocumentWindow.h"
#include "document/Document.h"
#include "view/Bell.h"
#include "view/TextCompletion.h"
#include "view/TextViewWidget.h"

namespace quillory {

EditingAids::EditingAids(DocumentWindow& window)
    : m_completion(new TextCompletion(window.view(), window.document().completion()))
{
    Document& document = window.document();
    const ChangeTracking& tracking = document.changeTracking();
    TextViewWidget& view = window.view();
    // After the text view has scrolled to the caret.
    QObject::connect(&tracking, &ChangeTracking::findIndicatorRequested, &view,
                     &TextViewWidget::showFindIndicatorForRange, Qt::QueuedConnection);
    QObject::connect(&tracking, &ChangeTracking::completeRequested, m_completion,
                     &TextCompletion::offer);
    QObject::connect(&document.textView(), &QPTextView::beep, new Bell(view.viewport()),
                     &Bell::ring);
}

} // namespace quillory
