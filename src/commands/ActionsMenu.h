#pragma once

#include "commands/CommandItem.h"

#include <QObject>
#include <vector>

namespace quillory {

class SyntaxColouring;

/// One entry of the menu of actions.
struct ActionEntry
{
    bool isSeparator = false;
    int tag = 0;       ///< the number of its kind
    QString title;     ///< as the menu's own form has it, see shownTitle()
    QString toolTip;   ///< empty for none
    QString imageName; ///< a drawing of the application, without its extension; empty for none
    QString keyEquivalent;
    /// Bits of KeyModifier; 0 without a key equivalent.
    quint32 keyEquivalentModifierMask = 0;
    int indentationLevel = 1;
    bool state = false;
    /// What the entry runs; nothing for one that only stands there.
    std::optional<CommandItem> representedObject;

    /// The title for menus that have a column of icons, which need no blanks before it.
    QString shownTitle() const { return title.trimmed(); }

    bool operator==(const ActionEntry&) const = default;
};

enum KeyModifier : quint32
{
    ShiftKeyModifier = 0x20000,
    ControlKeyModifier = 0x40000,
    OptionKeyModifier = 0x80000,
    CommandKeyModifier = 0x100000,
};

/// The menu for \a commandItems, the value of a definition's key: an entry without a title at
/// index 0, then one for each item, or "Unavailable" where there is none. What is no dictionary
/// counts as absent.
std::vector<ActionEntry> actionEntries(const PropertyList& commandItems);

/// The actions of a document's definition. They are made when they are first asked for.
class ActionsMenu : public QObject
{
    Q_OBJECT

public:
    /// \a colouring outlives this.
    explicit ActionsMenu(SyntaxColouring& colouring);

    const std::vector<ActionEntry>& entries() const;

    /// Forgets the entries, which are then made anew.
    void generateCommandsMenu();
    /// A place for more that a menu of actions may need when it is rebuilt; nothing so far.
    static void changeSubmenus() {}

Q_SIGNALS:
    /// The entries may be others now.
    void changed();

private:
    SyntaxColouring& m_colouring;
    mutable std::vector<ActionEntry> m_entries; ///< empty until they are made
};

} // namespace quillory
