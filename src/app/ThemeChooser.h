#pragma once

class QWidget;

namespace quillory {

class PreferenceBindings;
class PreferencesController;

/// The list of themes, and beside it what a text looks like.
QWidget* newThemeChooser(PreferencesController& controller, PreferenceBindings& bindings);

} // namespace quillory
