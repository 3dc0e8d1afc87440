#pragma once

#include "app/PreferencesTable.h"

#include <QWidget>

class QCheckBox;
class QGridLayout;
class QLabel;

namespace quillory {

/// One pane of the preferences window, laid out from its rows of the table: the headings, the check
/// boxes, and the fields behind them.
class PreferencesPane : public QWidget
{
    Q_OBJECT

public:
    PreferencesPane(const PreferencesPaneDefinition& definition, PreferencesController& controller,
                    PreferenceBindings& bindings);

private:
    void addRow(const PreferenceRow& row);
    void addHelp(const QString& text, int line);
    QCheckBox* newBox(const PreferenceRow& row);
    QWidget* newField(const PreferenceRow& row);
    void connectFieldTo(QCheckBox& box, QWidget& field, const PreferenceRow& row);

    PreferencesController& m_controller;
    PreferenceBindings& m_bindings;
    QGridLayout* m_layout;
};

} // namespace quillory
