#include "commands/ActionsMenu.h"

#include "syntax/SyntaxColouring.h"

namespace quillory {

namespace {

QString imageFor(CommandKind kind)
{
    switch (kind) {
    case CommandKind::Clipboard:
        return QStringLiteral("menuClipboardTemplate");
    case CommandKind::Snippet:
        return QStringLiteral("menuSnippetTemplate");
    case CommandKind::Template:
        return QStringLiteral("menuTemplateTemplate");
    case CommandKind::Url:
        return QStringLiteral("menuURLTemplate");
    case CommandKind::Server:
        return QStringLiteral("menuServerTemplate");
    case CommandKind::Terminal:
    case CommandKind::LaTeX:
        return QStringLiteral("menuTerminalTemplate");
    case CommandKind::Script:
        return QStringLiteral("menuScriptTemplate");
    case CommandKind::Help:
        return QStringLiteral("menuHelpTemplate");
    default:
        return QStringLiteral("menuCommandTemplate");
    }
}

quint32 maskFor(const std::optional<QString>& addition)
{
    if (addition == QLatin1StringView("shift"))
        return CommandKeyModifier | ShiftKeyModifier;
    if (addition == QLatin1StringView("option"))
        return CommandKeyModifier | OptionKeyModifier;
    if (addition == QLatin1StringView("control"))
        return CommandKeyModifier | ControlKeyModifier;
    return CommandKeyModifier;
}

ActionEntry entryFor(const CommandItem& item)
{
    ActionEntry entry;
    if (item.kind == CommandKind::Separator) {
        entry.isSeparator = true;
        return entry;
    }
    entry.tag = int(item.kind);
    entry.title = QStringLiteral("   ") + item.title.value_or(QStringLiteral("(null)"));
    entry.toolTip = item.string.value_or(QString());
    entry.imageName = imageFor(item.kind);
    if (item.keyString) {
        entry.keyEquivalent = *item.keyString;
        entry.keyEquivalentModifierMask = maskFor(item.commandKeyAddition);
    }
    entry.representedObject = item;
    return entry;
}

} // namespace

std::vector<ActionEntry> actionEntries(const PropertyList& commandItems)
{
    std::vector<ActionEntry> entries(1); // the title's
    for (const PropertyList& item : commandItems.toArray()) {
        if (item.as<PropertyList::Dictionary>())
            entries.push_back(entryFor(CommandItem::from(item)));
    }
    if (entries.size() == 1) {
        ActionEntry unavailable;
        unavailable.title = ActionsMenu::tr("Unavailable");
        entries.push_back(unavailable);
    }
    return entries;
}

ActionsMenu::ActionsMenu(SyntaxColouring& colouring) : m_colouring(colouring)
{
    connect(&colouring, &SyntaxColouring::definitionSelected, this,
            &ActionsMenu::generateCommandsMenu);
}

const std::vector<ActionEntry>& ActionsMenu::entries() const
{
    if (m_entries.empty()) {
        const Definition* definition = m_colouring.definition();
        m_entries = actionEntries(definition ? definition->value(QLatin1StringView("commandItems"))
                                             : PropertyList());
    }
    return m_entries;
}

void ActionsMenu::generateCommandsMenu()
{
    m_entries.clear();
    changeSubmenus();
    Q_EMIT changed();
}

} // namespace quillory
