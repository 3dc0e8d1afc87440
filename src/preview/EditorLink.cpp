#include "preview/EditorLink.h"

#include <QJsonDocument>
#include <cerrno>
#include <unistd.h>

namespace quillory {

EditorLink::EditorLink(int input, int output, QObject* parent)
    : QObject(parent), m_input(input), m_output(output), m_notifier(input, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &EditorLink::read);
}

void EditorLink::tell(const QJsonObject& message) const
{
    const QByteArray line = QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
    for (qsizetype written = 0; written < line.size();) {
        const ssize_t count =
            ::write(m_output, line.data() + written, size_t(line.size() - written));
        if (count < 0 && errno != EINTR)
            return; // reading tells that the editor is gone
        written += qMax<ssize_t>(count, 0);
    }
}

void EditorLink::read()
{
    char bytes[65536];
    const ssize_t count = ::read(m_input, bytes, sizeof bytes);
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0 || m_unread.size() > longestMessage) {
        m_notifier.setEnabled(false);
        Q_EMIT ended();
        return;
    }
    m_unread += QByteArrayView(bytes, count);
    for (qsizetype end = 0; (end = m_unread.indexOf('\n')) >= 0;) {
        const QJsonObject message = QJsonDocument::fromJson(m_unread.left(end)).object();
        m_unread.remove(0, end + 1);
        Q_EMIT received(message);
    }
}

} // namespace quillory
