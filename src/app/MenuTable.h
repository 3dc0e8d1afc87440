#pragma once

#include "foundation/DefaultsKeys.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QString>
#include <span>

class QMenu;

/// Marks a text of the menus for the tools that collect texts to translate; see menuText().
#define ENTRY(text) QT_TRANSLATE_NOOP("MenuTable", text)

namespace quillory {

class DocumentWindow;

/// What a command is while its menu is open.
enum class Offer
{
    Enabled,
    Disabled,
    Unavailable, ///< disabled, and called so
    Hidden
};

/// One line of a menu. Without a text it is a separator.
struct MenuItem
{
    const char* text = nullptr; ///< English, with its mnemonic
    bool inContextMenu = false;
    QKeySequence::StandardKey standardKey = QKeySequence::UnknownKey;
    /// Beside the desktop's own keys, or where the desktop has none: "A; B".
    const char* ownKeys = nullptr;
    void (*run)(DocumentWindow&) = nullptr;
    bool (*isEnabled)(const DocumentWindow&) = nullptr; ///< always, without one
    /// Asked when the menu opens, for what its keys are not to be taken away: they beep.
    Offer (*offer)(const DocumentWindow&) = nullptr;
    bool (*isChecked)(const DocumentWindow&) = nullptr; ///< has no check mark, without one
    /// Makes it a check mark that shows and turns this switch, for all windows and those to come.
    const DefaultsKey<bool>* preference = nullptr;
    /// In the place of the text where the name changes with the document; of a command with an
    /// offer, it is asked for with that.
    QString (*label)(const DocumentWindow&) = nullptr;
    /// Makes it a submenu, which is filled anew each time it opens.
    void (*fill)(QMenu&, DocumentWindow&) = nullptr;
};

struct MenuDefinition
{
    const char* title; ///< English, with its mnemonic
    std::span<const MenuItem> items;
    /// Adds what changes at the menu's end, each time it opens.
    void (*extend)(QMenu&, DocumentWindow&) = nullptr;
};

/// The menus of a document window, from left to right.
std::span<const MenuDefinition> menuTable();

// Menus with a file of their own.
std::span<const MenuItem> editMenu();
std::span<const MenuItem> searchMenu();
std::span<const MenuItem> textMenu();

/// The program's own keys first, so that the menus show the same on every desktop.
QList<QKeySequence> keysOf(const MenuItem& item);

/// \a text of the menu table in the user's language.
QString menuText(const char* text);

} // namespace quillory
