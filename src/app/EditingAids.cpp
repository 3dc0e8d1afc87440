#include "app/EditingAids.h"

#include "app/DocumentWindow.h"
#include "document/Document.h"
#include "foundation/UserDefaults.h"
#include "view/Bell.h"
#include "view/TextCompletion.h"
#include "view/TextViewWidget.h"
#include "view/TypewriterScrolling.h"

namespace quillory {

namespace {

void connectTypewriterScrolling(DocumentWindow& window)
{
    auto* typewriter = new TypewriterScrolling(window.view(), &window.view());
    Document& document = window.document();
    QObject::connect(&document.changeTracking(), &ChangeTracking::constrainScrollRequested,
                     typewriter, &TypewriterScrolling::constrainScroll);
    QObject::connect(&document, &Document::textViewSettingsApplied, typewriter,
                     [typewriter, &defaults = window.environment().defaults] {
                         const bool isOn = defaults.value(keys::constrainScroll);
                         typewriter->setOn(isOn);
                         if (isOn)
                             typewriter->simpleScroll();
                     });
}

} // namespace

EditingAids::EditingAids(DocumentWindow& window)
    : m_completion(new TextCompletion(window.view(), window.document().completion()))
{
    Document& document = window.document();
    const ChangeTracking& tracking = document.changeTracking();
    TextViewWidget& view = window.view();
    // After the text view has scrolled to the caret. Not an event of the view's own: those it deals
    // with while it brings its scroll bars up to date.
    QObject::connect(
        &tracking, &ChangeTracking::findIndicatorRequested, &window,
        [&view](TextRange range) { view.showFindIndicatorForRange(range); }, Qt::QueuedConnection);
    QObject::connect(&tracking, &ChangeTracking::completeRequested, m_completion,
                     &TextCompletion::offer);
    QObject::connect(&document.textView(), &QPTextView::beep, new Bell(view.viewport()),
                     &Bell::ring);
    QObject::connect(&document.lineNavigation(), &LineNavigation::lineSelected, &view,
                     [&view](TextRange line) {
                         view.ensureVisible(line.location);
                         view.showFindIndicatorForRange(line);
                         view.setFocus();
                     });
    connectTypewriterScrolling(window);
}

} // namespace quillory
