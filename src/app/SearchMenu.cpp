#include "app/DocumentWindow.h"
#include "app/FindBar.h"
#include "app/MenuConditions.h"
#include "app/MenuTable.h"

namespace quillory {

namespace {

using W = DocumentWindow;
using Direction = FindSession::Direction;

constexpr MenuItem separator{};

constexpr MenuItem items[]{
    {.text = ENTRY("&Find…"),
     .standardKey = QKeySequence::Find,
     .ownKeys = "Ctrl+F",
     .run = [](W& w) { FindBar::of(w).open(false); }},
    {.text = ENTRY("&Replace…"),
     .ownKeys = "Ctrl+H",
     .run = [](W& w) { FindBar::of(w).open(true); },
     .isEnabled = canReplace},
    separator,
    {.text = ENTRY("Find &Next"),
     .ownKeys = "F3; Ctrl+G",
     .run = [](W& w) { FindBar::of(w).findNext(Direction::Forward); }},
    {.text = ENTRY("Find &Previous"),
     .ownKeys = "Shift+F3",
     .run = [](W& w) { FindBar::of(w).findNext(Direction::Backward); }},
    {.text = ENTRY("&Use Selection for Find"),
     .ownKeys = "Ctrl+E",
     .run = [](W& w) { FindBar::of(w).useSelection(); },
     .isEnabled = hasSelection},
    {.text = ENTRY("Select &All Found"),
     .ownKeys = "Alt+F3",
     .run = [](W& w) { FindBar::of(w).selectAll(); }},
};

} // namespace

std::span<const MenuItem> searchMenu()
{
    return items;
}

} // namespace quillory
