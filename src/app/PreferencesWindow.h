#pragma once

#include "app/PreferenceBindings.h"

#include <QDialog>

class QSettings;
class QTabWidget;

namespace quillory {

class PreferencesController;

/// The preferences of the application, in panes. What is changed counts at once, in all windows.
class PreferencesWindow : public QDialog
{
    Q_OBJECT

public:
    /// Both arguments outlive this.
    PreferencesWindow(PreferencesController& controller, QSettings& state);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addPanes();

    PreferencesController& m_controller;
    QSettings& m_state;
    PreferenceBindings m_bindings;
    QTabWidget* m_panes;
    bool m_followsScreen = false;
};

} // namespace quillory
