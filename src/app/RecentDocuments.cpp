#include "app/RecentDocuments.h"

#include <QFileInfo>
#include <QSettings>

namespace quillory {

namespace {

const QString key = QStringLiteral("recentDocuments");

} // namespace

QStringList RecentDocuments::paths() const
{
    QStringList paths = m_state.value(key).toStringList();
    paths.removeIf([](const QString& path) { return !QFileInfo::exists(path); });
    return paths;
}

void RecentDocuments::note(const QString& path)
{
    QStringList paths = m_state.value(key).toStringList();
    if (!paths.isEmpty() && paths.front() == path)
        return;
    paths.removeAll(path);
    paths.prepend(path);
    m_state.setValue(key, QStringList(paths.mid(0, limit)));
}

void RecentDocuments::clear()
{
    m_state.remove(key);
}

} // namespace quillory
