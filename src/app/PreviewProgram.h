#pragma once

#include <QJsonObject>
#include <QObject>
#include <QProcess>

namespace quillory {

/// The program that shows one document as a web page, and the way to it: one JSON object a line,
/// over its standard input and output (see preview/EditorLink.h for what they say). Nothing here
/// waits for it.
class PreviewProgram : public QObject
{
    Q_OBJECT

public:
    /// \a folder is where the program "quillory-preview" lies.
    explicit PreviewProgram(const QString& folder, QObject* parent = nullptr);
    /// Ends the program.
    ~PreviewProgram() override;

    /// Starts the program where it does not run.
    void tell(const QJsonObject& message);
    bool isRunning() const { return m_process != nullptr; }
    /// 0 while it does not run.
    qint64 processId() const { return m_process ? m_process->processId() : 0; }

Q_SIGNALS:
    void received(const QJsonObject& message);
    /// It could not be started, or ended unasked; \a reason is a sentence.
    void failed(const QString& reason);

private:
    void start();
    void read();
    void end();
    QString reasonOfEnd() const;

    QString m_path;
    QProcess* m_process = nullptr;
    QByteArray m_complaints; ///< the last that it wrote to standard error
};

} // namespace quillory
