#include "app/PreviewProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTimer>

namespace quillory {

namespace {

constexpr int grace = 3000; ///< milliseconds from asking the program to end to ending it
constexpr qsizetype longestComplaint = 4096;  ///< bytes
constexpr qsizetype longestMessage = 1 << 20; ///< bytes

} // namespace

PreviewProgram::PreviewProgram(const QString& folder, QObject* parent)
    : QObject(parent), m_path(folder + QStringLiteral("/quillory-preview"))
{}

PreviewProgram::~PreviewProgram()
{
    end();
}

void PreviewProgram::tell(const QJsonObject& message)
{
    if (!m_process)
        start();
    if (m_process)
        m_process->write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
}

void PreviewProgram::start()
{
    m_complaints.clear();
    const QString shown = QDir::toNativeSeparators(m_path);
    if (!QFileInfo(m_path).isExecutable()) {
        // Whoever told something goes on first.
        QMetaObject::invokeMethod(
            this,
            [this, shown] {
                Q_EMIT failed(tr("It is not installed: there is no program “%1”.").arg(shown));
            },
            Qt::QueuedConnection);
        return;
    }
    m_process = new QProcess;
    m_process->setWorkingDirectory(QDir::rootPath());
    connect(m_process, &QProcess::readyReadStandardOutput, this, &PreviewProgram::read);
    connect(m_process, &QProcess::readyReadStandardError, this, [this] {
        m_complaints += m_process->readAllStandardError();
        m_complaints = m_complaints.right(longestComplaint);
    });
    connect(m_process, &QProcess::errorOccurred, this, [this, shown](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        const QString reason = m_process->errorString();
        end();
        Q_EMIT failed(tr("“%1” cannot be started: %2.").arg(shown, reason));
    });
    connect(m_process, &QProcess::finished, this, [this] {
        const QString reason = reasonOfEnd();
        end();
        Q_EMIT failed(reason);
    });
    m_process->start(m_path, QStringList());
}

QString PreviewProgram::reasonOfEnd() const
{
    const QStringList lines = QString::fromLocal8Bit(m_complaints).split(u'\n', Qt::SkipEmptyParts);
    const QString last = lines.isEmpty() ? QString() : lines.last().trimmed();
    return last.isEmpty() ? tr("Its program has ended unexpectedly.")
                          : tr("Its program has ended unexpectedly: %1").arg(last);
}

void PreviewProgram::read()
{
    while (m_process && m_process->canReadLine()) {
        const QByteArray line = m_process->readLine(longestMessage);
        Q_EMIT received(QJsonDocument::fromJson(line).object());
    }
}

/// The process goes on its own way, which a closed input ends.
void PreviewProgram::end()
{
    QProcess* const process = std::exchange(m_process, nullptr);
    if (!process)
        return;
    disconnect(process, nullptr, this, nullptr);
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
        return;
    }
    process->setParent(qApp); // at the very end, that ends it
    connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->closeWriteChannel();
    QTimer::singleShot(grace, process, &QProcess::kill);
}

} // namespace quillory
