#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QSocketNotifier>

namespace quillory {

/// The way to the editor: two pipes with one JSON object a line.
///
/// The editor says what to "do": "inspect" (whether that is offered in "value"), "show", "hide",
/// "load" (the page in "file" as if it lay at "path", with what lies in "folder"; "isAsked" where
/// the user wanted it).
/// It is told ("tell"): "visible" (with "value"), "state" ("title", "canGoBack", "canGoNext",
/// "strip"), "loaded" once for each "load", and "reload" where the user asks for the text as it is
/// now.
class EditorLink : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype longestMessage = 1 << 20; ///< bytes

    /// Reads and writes these files, which stay the caller's.
    EditorLink(int input, int output, QObject* parent = nullptr);

    void tell(const QJsonObject& message) const;

Q_SIGNALS:
    void received(const QJsonObject& message);
    /// The editor is gone, or talks nonsense.
    void ended();

private:
    void read();

    int m_input;
    int m_output;
    QByteArray m_unread;
    QSocketNotifier m_notifier;
};

} // namespace quillory
