#include "app/MenuConditions.h"

#include "app/DocumentWindow.h"
#include "app/MenuTable.h"
#include "document/CloudContainer.h"
#include "document/Document.h"
#include "foundation/UserDefaults.h"

#include <algorithm>

namespace quillory {

bool isThere(const DocumentWindow& window)
{
    return !window.document().isLoading();
}

bool isIdle(const DocumentWindow& window)
{
    return isThere(window) && !window.isBusy() && !window.document().programs().isRunning();
}

bool hasFile(const DocumentWindow& window)
{
    return isIdle(window) && !window.document().path().isEmpty();
}

bool isUnderstood(const DocumentWindow& window)
{
    return isIdle(window) && !window.document().isUndecoded();
}

bool hasSelection(const DocumentWindow& window)
{
    const auto& selections = window.document().textView().selections();
    return std::any_of(selections.begin(), selections.end(),
                       [](const Selection& selection) { return !selection.isCaret(); });
}

bool canDelete(const DocumentWindow& window)
{
    return window.document().textView().isEditable() && hasSelection(window);
}

bool canReplace(const DocumentWindow& window)
{
    return window.document().textView().isEditable();
}

bool canCloseTag(const DocumentWindow& window)
{
    Document& document = window.document();
    return document.textView().isEditable() && document.record().canCloseTags &&
           !document.completeString().isEmpty();
}

Offer offerOfFunctions(const DocumentWindow& window)
{
    return window.document().record().functionTitle.isEmpty() ? Offer::Unavailable : Offer::Enabled;
}

Offer offerOfNeighbours(const DocumentWindow& window)
{
    if (offerOfFunctions(window) == Offer::Unavailable)
        return Offer::Unavailable;
    const FunctionNavigation& navigation = window.document().functionNavigation();
    if (navigation.currentLineNumber() == 0)
        return Offer::Disabled;
    const FunctionScan scan = navigation.scan();
    if (scan.text.length() > FunctionNavigation::quickLength)
        return Offer::Enabled;
    using Clock = std::chrono::steady_clock;
    const auto items = scan.run(
        [end = Clock::now() + FunctionNavigation::quickTime] { return Clock::now() > end; });
    return items && items->empty() ? Offer::Disabled : Offer::Enabled;
}

Offer offerOfCloud(const DocumentWindow& window)
{
    const bool isAvailable = CloudContainer::ofThisSession().isAvailable();
    UserDefaults& defaults = window.environment().defaults;
    if (!defaults.isWritten(keys::isIcloudAvailable) ||
        defaults.value(keys::isIcloudAvailable) != isAvailable)
        defaults.setValue(keys::isIcloudAvailable, isAvailable);
    if (!isAvailable)
        return Offer::Hidden;
    return window.document().path().isEmpty() ? Offer::Disabled : Offer::Enabled;
}

} // namespace quillory
