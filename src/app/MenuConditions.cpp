#include "app/MenuConditions.h"

#include "app/DocumentWindow.h"
#include "document/Document.h"

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

bool canCloseTag(const DocumentWindow& window)
{
    Document& document = window.document();
    return document.textView().isEditable() && document.record().canCloseTags &&
           !document.completeString().isEmpty();
}

} // namespace quillory
