#include "app/ActionKeys.h"

#include "app/MenuTable.h"
#include "commands/ActionsMenu.h"

namespace quillory {

QKeySequence keyOf(const ActionEntry& entry)
{
    const QString& key = entry.keyEquivalent;
    if (key.size() != 1 || !key[0].isPrint() || key[0].isSpace())
        return {};
    const quint32 mask = entry.keyEquivalentModifierMask;
    const bool isCapital = key[0].isLetter() && key[0].isUpper();
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ControlModifier, (mask & CommandKeyModifier) != 0);
    modifiers.setFlag(Qt::ShiftModifier, (mask & ShiftKeyModifier) != 0 || isCapital);
    modifiers.setFlag(Qt::AltModifier, (mask & OptionKeyModifier) != 0);
    modifiers.setFlag(Qt::MetaModifier, (mask & ControlKeyModifier) != 0);
    return QKeyCombination(modifiers, Qt::Key(key[0].toUpper().unicode()));
}

bool isTaken(const QKeySequence& key)
{
    for (const MenuDefinition& menu : menuTable()) {
        for (const MenuItem& item : menu.items) {
            if (item.text && keysOf(item).contains(key))
                return true;
        }
    }
    return false;
}

} // namespace quillory
