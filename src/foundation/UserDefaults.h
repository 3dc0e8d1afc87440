#pragma once

#include "foundation/DefaultsKeys.h"

#include <QHash>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QVariant>
#include <type_traits>

namespace quillory {

/// The user's settings: an INI file with one entry a key (see DefaultsKeys.h).
///
/// A key that was never written reads as its registered value, and without one as false, 0 or
/// empty. A written value stays, also where it equals the registered one or is a NO. A value that
/// the user wrote into the file by hand reads as it would in a property list: YES, true and 1 are
/// all true.
class UserDefaults : public QObject
{
    Q_OBJECT

public:
    /// \a path is the file; it need not exist, nor need the folder that it lies in.
    explicit UserDefaults(const QString& path);

    template<class T>
    T value(const DefaultsKey<T>& key) const
    {
        return converted(stored(key.name), T());
    }

    template<class T>
    void setValue(const DefaultsKey<T>& key, const std::type_identity_t<T>& value)
    {
        store(key.name, storable(value));
    }

    /// What the key reads as while it is not written. Not kept in the file.
    template<class T>
    void registerDefault(const DefaultsKey<T>& key, const std::type_identity_t<T>& value)
    {
        m_registered.insert(QLatin1String(key.name), QVariant::fromValue(value));
    }

    template<class T>
    bool isWritten(const DefaultsKey<T>& key) const
    {
        return m_settings.contains(QLatin1String(key.name));
    }

    /// Makes the key one that was never written.
    template<class T>
    void remove(const DefaultsKey<T>& key)
    {
        m_settings.remove(QLatin1String(key.name));
        Q_EMIT changed(QLatin1StringView(key.name));
    }

    /// Writes what is new to the file, and reads what others wrote. False when the file cannot be
    /// written. Happens by itself now and then and at the end.
    bool synchronize();

    QString path() const { return m_settings.fileName(); }

Q_SIGNALS:
    /// A key was written or removed through this object, be it with the value that it had.
    void changed(QLatin1StringView key);

private:
    QVariant stored(const char* name) const;
    void store(const char* name, const QVariant& value);

    template<class T>
    static QVariant storable(const T& value)
    {
        return value;
    }
    static QVariant storable(const QUrl& value) { return value.toString(QUrl::FullyEncoded); }

    static bool converted(const QVariant& stored, bool);
    static int converted(const QVariant& stored, int);
    static QString converted(const QVariant& stored, const QString&);
    static QUrl converted(const QVariant& stored, const QUrl&);

    QSettings m_settings;
    QHash<QString, QVariant> m_registered;
};

} // namespace quillory
