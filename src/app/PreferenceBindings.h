#pragma once

#include "foundation/DefaultsKeys.h"

#include <QObject>
#include <functional>
#include <initializer_list>
#include <vector>

class QCheckBox;
class QComboBox;
class QFontComboBox;
class QLineEdit;
class QSpinBox;

namespace quillory {

class UserDefaults;

/// Keeps controls and user defaults the same, both ways: what the user does to a control is stored
/// at once, and what anybody writes shows in the control at once.
///
/// The controls live as long as this.
class PreferenceBindings : public QObject
{
    Q_OBJECT

public:
    explicit PreferenceBindings(UserDefaults& defaults, QObject* parent = nullptr);

    /// An inverted box is checked while the key is off.
    void bind(QCheckBox& box, const DefaultsKey<bool>& key, bool isInverted = false);
    /// Checked for anything but 0; stores 1 or 0.
    void bind(QCheckBox& box, const DefaultsKey<int>& key);
    /// By the index of the item; another value shows the item \a otherwise, -1 for none.
    void bind(QComboBox& box, const DefaultsKey<int>& key, int otherwise = -1);
    /// By the item's data. A text that no item has shows none.
    void bind(QComboBox& box, const DefaultsKey<QString>& key);
    /// By the family; an empty one shows the desktop's font.
    void bind(QFontComboBox& box, const DefaultsKey<QString>& key);
    void bind(QLineEdit& field, const DefaultsKey<QString>& key);
    /// The box shows the key's value plus \a offset, or its minimum where that is out of its range.
    void bind(QSpinBox& box, const DefaultsKey<int>& key, int offset);

    /// Calls \a show now, and each time that one of \a keyNames is written.
    void watch(std::initializer_list<const char*> keyNames, const std::function<void()>& show);

Q_SIGNALS:
    /// The user changed something; it is stored.
    void changedByUser();

private:
    template<class T>
    void store(const DefaultsKey<T>& key, const std::type_identity_t<T>& value);
    void show(QLatin1StringView key);

    struct Watch
    {
        std::vector<const char*> keyNames;
        std::function<void()> show;
    };

    UserDefaults& m_defaults;
    std::vector<Watch> m_watches;
};

} // namespace quillory
