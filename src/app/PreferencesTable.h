#pragma once

#include "foundation/DefaultsKeys.h"

#include <QCoreApplication>
#include <span>
#include <variant>

class QWidget;

/// Marks a text of the preferences for the tools that collect texts to translate; see
/// preferenceText().
#define PREFERENCE(text) QT_TRANSLATE_NOOP("Preferences", text)

namespace quillory {

class PreferenceBindings;
class PreferencesController;

// What stands in a row behind its check box, or instead of one.

struct TextField
{
    const DefaultsKey<QString>* key;
};

/// Of the texts; their numbers are stored.
struct ChoiceField
{
    const DefaultsKey<int>* key;
    std::span<const char* const> texts; ///< English
};

struct FontField
{
    const DefaultsKey<QString>* key; ///< holds the family
};

/// Binds itself.
struct OwnField
{
    QWidget* (*make)(PreferencesController& controller, PreferenceBindings& bindings);
    bool isTall = false; ///< takes what room there is
};

/// One row of a pane. Texts are English, with their mnemonics.
struct PreferenceRow
{
    const char* heading = nullptr; ///< begins a group; without a check box it names the field
    const char* label = nullptr;   ///< of the check box
    const char* help = nullptr;    ///< what the check box does, in a few words more
    /// What the check box turns; without one there is none. A number is stored as 1 or 0.
    std::variant<std::monostate, const DefaultsKey<bool>*, const DefaultsKey<int>*> flag{};
    bool isInverted = false; ///< the box is checked while the flag is off
    /// Behind a check box it can be used while that is checked.
    std::variant<std::monostate, TextField, ChoiceField, FontField, OwnField> field{};
};

struct PreferencesPaneDefinition
{
    const char* title; ///< English, with its mnemonic
    const char* icon;  ///< the name of a tintedIcon()
    std::span<const PreferenceRow> rows;
};

/// The panes of the preferences window, and in them every key that the user sets there.
std::span<const PreferencesPaneDefinition> preferencesTable();

/// \a text of the table in the user's language.
QString preferenceText(const char* text);

} // namespace quillory
