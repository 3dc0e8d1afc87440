#include "app/DocumentWindow.h"
#include "app/EditingAids.h"
#include "app/MenuConditions.h"
#include "app/MenuTable.h"
#include "document/Document.h"
#include "view/TextCompletion.h"

namespace quillory {

namespace {

using W = DocumentWindow;

constexpr MenuItem separator{};

constexpr MenuItem items[]{
    // Where brackets need a third key, the letters are the way.
    {.text = ENTRY("&Indent"),
     .ownKeys = "Ctrl+]; Ctrl+I",
     .run = [](W& w) { w.document().indentSelection(); },
     .isEnabled = canDelete},
    {.text = ENTRY("&Unindent"),
     .ownKeys = "Ctrl+[; Ctrl+Shift+I",
     .run = [](W& w) { w.document().unindentSelection(); },
     .isEnabled = canDelete},
    {.text = ENTRY("Toggle &Comment"),
     .ownKeys = "Ctrl+/",
     .run = [](W& w) { w.document().commentAction(); },
     .isEnabled = canDelete},
    {.text = ENTRY("Close Current &Tag"),
     .ownKeys = "Alt+.",
     .run = [](W& w) { w.document().closeCurrentTag(); },
     .isEnabled = canCloseTag},
    separator,
    {.text = ENTRY("Remove Trailing &Blanks"),
     .ownKeys = "Ctrl+Shift+T",
     .run = [](W& w) { w.document().removeWhitespace(); },
     .isEnabled = canDelete},
    {.text = ENTRY("&Zap Gremlins"),
     .ownKeys = "Ctrl+Shift+G",
     .run = [](W& w) { w.document().zapGremlins(); },
     .isEnabled = canDelete},
    {.text = ENTRY("Un&wrap"),
     .ownKeys = "Ctrl+Shift+J",
     .run = [](W& w) { w.document().unwrap(); },
     .isEnabled = canDelete},
    {.text = ENTRY("&Reformat"),
     .ownKeys = "Ctrl+Shift+R",
     .run = [](W& w) { w.document().reformat(); },
     .isEnabled = canDelete},
    separator,
    // Input methods take Ctrl and the space bar on many desktops.
    {.text = ENTRY("Co&mplete"),
     .ownKeys = "Ctrl+Space; F5",
     .run = [](W& w) { w.aids().completion().complete(); },
     .isEnabled = [](const W& w) { return w.document().textView().isEditable(); }},
    {.text = ENTRY("Show Com&pletions"), .preference = &keys::showCompletions},
};

} // namespace

std::span<const MenuItem> textMenu()
{
    return items;
}

} // namespace quillory
