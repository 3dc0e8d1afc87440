#include "foundation/UserDefaults.h"

#include "foundation/PropertyList.h"

#include <algorithm>
#include <limits>

namespace quillory {

UserDefaults::UserDefaults(const QString& path) : m_settings(path, QSettings::IniFormat) {}

bool UserDefaults::synchronize()
{
    m_settings.sync();
    return m_settings.status() == QSettings::NoError;
}

QVariant UserDefaults::stored(const char* name) const
{
    const QLatin1String key(name);
    return m_settings.contains(key) ? m_settings.value(key) : m_registered.value(key);
}

void UserDefaults::store(const char* name, const QVariant& value)
{
    m_settings.setValue(QLatin1String(name), value);
    Q_EMIT changed(QLatin1StringView(name));
}

bool UserDefaults::converted(const QVariant& stored, bool)
{
    return PropertyList(stored.toString()).toBool();
}

int UserDefaults::converted(const QVariant& stored, int)
{
    const PropertyList text(stored.toString());
    const qint64 value = text.toInteger();
    if (value == 0 && text.toBool())
        return 1; // a YES
    using Limits = std::numeric_limits<int>;
    return int(std::clamp<qint64>(value, Limits::min(), Limits::max()));
}

QString UserDefaults::converted(const QVariant& stored, const QString&)
{
    // A text with a comma that was written without quotes comes as a list.
    if (stored.typeId() == QMetaType::QStringList)
        return stored.toStringList().join(QStringLiteral(", "));
    return stored.toString();
}

QUrl UserDefaults::converted(const QVariant& stored, const QUrl&)
{
    if (stored.typeId() == QMetaType::QUrl)
        return stored.toUrl();
    const QString text = stored.toString();
    return text.startsWith(u'/') ? QUrl::fromLocalFile(text) : QUrl(text);
}

} // namespace quillory
