#pragma once

#include <QObject>
#include <QString>

namespace quillory {

/// The names of what concerns the whole application.
namespace notifications {

/// Settings changed; every document applies them anew.
inline const QString preferencesDidChange = QStringLiteral("PREFERENCESDIDCHANGENF");
/// A window moved to another screen.
inline const QString windowDidChangeScreen = QStringLiteral("WINDOWDIDCHANGESCREENNF");
/// The windows of the last session are open again.
inline const QString didFinishRestoringWindows =
    QStringLiteral("NSApplicationDidFinishRestoringWindowsNotification");

} // namespace notifications

/// Tells whoever listens what happened, where neither side knows the other.
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Reaches all listeners of this thread before it returns.
    void post(const QString& name) { Q_EMIT posted(name); }

Q_SIGNALS:
    void posted(const QString& name);
};

} // namespace quillory
