#pragma once

#include <QObject>
#include <optional>

class QDBusMessage;

namespace quillory {

/// Whether the desktop is light or dark: what it answers to "color-scheme" of its settings portal
/// (org.freedesktop.appearance, see the documentation of XDG Desktop Portal), and where it has no
/// portal or no preference, what its palette is.
class DesktopScheme : public QObject
{
    Q_OBJECT

public:
    explicit DesktopScheme(QObject* parent = nullptr);

    bool isDark() const { return m_asked.value_or(isPaletteDark()); }
    static bool isPaletteDark();

    /// Asks the desktop, and from then on follows it. Nothing waits for the answer, which comes
    /// with changed(); asked again, what is known comes at once.
    void follow();

Q_SIGNALS:
    /// Also with the first answer, and with one that is the same.
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void noteSetting(const QDBusMessage& message);

private:
    void askPortal();
    void take(const QVariant& scheme);

    std::optional<bool> m_asked; ///< the portal's preference
    bool m_follows = false;
};

} // namespace quillory
