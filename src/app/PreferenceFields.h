#pragma once

class QWidget;

namespace quillory {

class PreferenceBindings;
class PreferencesController;

// Fields of the preferences that take more than one control.

/// The text's font, its size, and a way to other fonts.
QWidget* newFontField(PreferencesController& controller, PreferenceBindings& bindings);
/// The themes for a light and for a dark desktop.
QWidget* newSchemeThemesField(PreferencesController& controller, PreferenceBindings& bindings);
/// The folder whose files are offered for opening.
QWidget* newFolderField(PreferencesController& controller, PreferenceBindings& bindings);
/// The address of a version list.
QWidget* newVersionListField(PreferencesController& controller, PreferenceBindings& bindings);
/// What stands below a printed page.
QWidget* newFooterSample(PreferencesController& controller, PreferenceBindings& bindings);

} // namespace quillory
