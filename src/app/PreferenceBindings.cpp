#include "app/PreferenceBindings.h"

#include "foundation/UserDefaults.h"

#include <QCheckBox>
#include <QFontComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <algorithm>

namespace quillory {

PreferenceBindings::PreferenceBindings(UserDefaults& defaults, QObject* parent)
    : QObject(parent), m_defaults(defaults)
{
    connect(&defaults, &UserDefaults::changed, this, &PreferenceBindings::show);
}

template<class T>
void PreferenceBindings::store(const DefaultsKey<T>& key, const std::type_identity_t<T>& value)
{
    m_defaults.setValue(key, value);
    Q_EMIT changedByUser();
}

void PreferenceBindings::watch(std::initializer_list<const char*> keyNames,
                               const std::function<void()>& show)
{
    m_watches.push_back({keyNames, show});
    show();
}

void PreferenceBindings::show(QLatin1StringView key)
{
    for (const Watch& watch : m_watches) {
        if (std::any_of(watch.keyNames.begin(), watch.keyNames.end(),
                        [key](const char* name) { return key == QLatin1StringView(name); }))
            watch.show();
    }
}

void PreferenceBindings::bind(QCheckBox& box, const DefaultsKey<bool>& key, bool isInverted)
{
    connect(&box, &QCheckBox::clicked, this,
            [=, this](bool isChecked) { store(key, isChecked != isInverted); });
    watch({key.name}, [=, this, &box] { box.setChecked(m_defaults.value(key) != isInverted); });
}

void PreferenceBindings::bind(QCheckBox& box, const DefaultsKey<int>& key)
{
    connect(&box, &QCheckBox::clicked, this,
            [=, this](bool isChecked) { store(key, isChecked ? 1 : 0); });
    watch({key.name}, [=, this, &box] { box.setChecked(m_defaults.value(key) != 0); });
}

void PreferenceBindings::bind(QComboBox& box, const DefaultsKey<int>& key, int otherwise)
{
    connect(&box, &QComboBox::activated, this, [=, this](int index) { store(key, index); });
    watch({key.name}, [=, this, &box] {
        const int index = m_defaults.value(key);
        box.setCurrentIndex(index >= 0 && index < box.count() ? index : otherwise);
    });
}

void PreferenceBindings::bind(QComboBox& box, const DefaultsKey<QString>& key)
{
    connect(&box, &QComboBox::activated, this,
            [=, this, &box](int index) { store(key, box.itemData(index).toString()); });
    watch({key.name},
          [=, this, &box] { box.setCurrentIndex(box.findData(m_defaults.value(key))); });
}

void PreferenceBindings::bind(QFontComboBox& box, const DefaultsKey<QString>& key)
{
    connect(&box, &QComboBox::activated, this,
            [=, this, &box] { store(key, box.currentFont().family()); });
    watch({key.name}, [=, this, &box] {
        const QString family = m_defaults.value(key);
        box.setCurrentFont(family.isEmpty() ? QFont() : QFont(family));
    });
}

void PreferenceBindings::bind(QLineEdit& field, const DefaultsKey<QString>& key)
{
    connect(&field, &QLineEdit::textEdited, this,
            [=, this](const QString& text) { store(key, text); });
    watch({key.name}, [=, this, &field] {
        // Setting the text that is there would lose the place of the caret.
        if (const QString text = m_defaults.value(key); text != field.text())
            field.setText(text);
    });
}

void PreferenceBindings::bind(QSpinBox& box, const DefaultsKey<int>& key, int offset)
{
    connect(&box, &QSpinBox::valueChanged, this,
            [=, this](int value) { store(key, value - offset); });
    watch({key.name}, [=, this, &box] {
        const qint64 value = qint64(m_defaults.value(key)) + offset;
        const QSignalBlocker quiet(&box);
        box.setValue(value < box.minimum() || value > box.maximum() ? box.minimum() : int(value));
    });
}

} // namespace quillory
