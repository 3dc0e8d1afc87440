#include "commands/ProgramRun.h"

#include "commands/ProgramOutput.h"
#include "foundation/Background.h"

#include <QEventLoop>
#include <QFile>
#include <QMutex>
#include <QProcess>
#include <QTimer>
#include <csignal>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillory {

namespace {

/// How to tell a file from what stood at its path before; all zero where there is none.
struct FileVersion
{
    ino_t inode = 0;
    off_t size = 0;
    time_t seconds = 0;
    long nanoseconds = 0;

    bool operator==(const FileVersion&) const = default;

    static FileVersion of(const QString& path)
    {
        struct stat found = {};
        if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &found) != 0)
            return {};
        return {found.st_ino, found.st_size, found.st_mtim.tv_sec, found.st_mtim.tv_nsec};
    }
};

/// In the child, before the program: only what is safe between fork and exec.
void prepareChild(pid_t editor)
{
    ::setsid();
    // What the editor's libraries may have opened without the flag for it.
    ::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
    // An editor that crashes leaves no program behind.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != editor)
        ::_exit(1);
}

/// The program and its output, on the thread that waits for it.
class Worker : public QObject
{
public:
    explicit Worker(const ProgramStart& start);

    ProgramOutcome run();
    /// Ends the program and its group; run() returns once that is done.
    void end();

private:
    void gather(QByteArray& stream, const QByteArray& bytes);
    bool signalGroup(int signal) const;

    const ProgramStart& m_start;
    QProcess m_process;
    QEventLoop m_loop;
    QByteArray m_output;
    QByteArray m_error;
    ProgramOutcome m_outcome;
    pid_t m_group = 0;
    bool m_ending = false;
    bool m_graceIsOver = false;
};

Worker::Worker(const ProgramStart& start) : m_start(start)
{
    m_process.setProgram(start.command.program);
    m_process.setArguments(start.command.arguments);
    m_process.setWorkingDirectory(start.workingDirectory);
    m_process.setProcessEnvironment(start.environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setChildProcessModifier([editor = ::getpid()] { prepareChild(editor); });
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, this,
                     [this] { gather(m_output, m_process.readAllStandardOutput()); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, this,
                     [this] { gather(m_error, m_process.readAllStandardError()); });
    QObject::connect(&m_process, &QProcess::errorOccurred, this, [this](auto error) {
        if (error == QProcess::FailedToStart)
            m_loop.quit();
    });
    QObject::connect(&m_process, &QProcess::finished, this, [this](int code, auto status) {
        if (m_outcome.ending == ProgramOutcome::Ending::FailedToStart)
            m_outcome.ending = ProgramOutcome::Ending::Ran;
        m_outcome.exitStatus = status == QProcess::NormalExit ? code : -code;
        // Its children have until the grace is over.
        if (!m_ending || m_graceIsOver || !signalGroup(0))
            m_loop.quit();
    });
}

ProgramOutcome Worker::run()
{
    const FileVersion before = FileVersion::of(m_start.product);
    m_process.start(QIODevice::ReadOnly);
    m_group = pid_t(m_process.processId());
    if (m_process.state() != QProcess::NotRunning)
        m_loop.exec();
    gather(m_output, m_process.readAllStandardOutput());
    gather(m_error, m_process.readAllStandardError());
    const FileVersion after = FileVersion::of(m_start.product);
    m_outcome.hasProduct = after != FileVersion();
    m_outcome.isProductNew = m_outcome.hasProduct && after != before;
    if (!m_ending) {
        m_outcome.output = textOfOutput(m_output, m_start.encoding);
        m_outcome.output = m_outcome.output.replacing({m_outcome.output.length(), 0},
                                                      textOfOutput(m_error, m_start.encoding));
    }
    return std::move(m_outcome);
}

void Worker::gather(QByteArray& stream, const QByteArray& bytes)
{
    if (m_ending)
        return;
    stream += bytes;
    if (m_output.size() + m_error.size() <= m_start.mostOutput)
        return;
    m_outcome.ending = ProgramOutcome::Ending::WroteTooMuch;
    end();
}

void Worker::end()
{
    if (m_ending)
        return;
    m_ending = true;
    m_output = m_error = QByteArray();
    if (!signalGroup(SIGTERM))
        m_process.terminate(); // it is so new that it has no group yet
    QTimer::singleShot(ProgramRun::grace, this, [this] {
        m_graceIsOver = true;
        signalGroup(SIGKILL);
        if (m_process.state() == QProcess::NotRunning)
            m_loop.quit();
    });
}

/// False when there is no one left to signal.
bool Worker::signalGroup(int signal) const
{
    return m_group > 0 && ::killpg(m_group, signal) == 0;
}

} // namespace

/// What both threads know.
struct ProgramRun::Control
{
    QMutex mutex;
    Worker* worker = nullptr; ///< while there is one
    bool isGivenUp = false;

    ProgramOutcome run(const ProgramStart& start)
    {
        if (!start.command.program.startsWith(u'/'))
            return {};
        const WaitingInPool waiting;
        Worker made(start);
        if (!setWorker(&made))
            return {};
        ProgramOutcome outcome = made.run();
        setWorker(nullptr);
        return outcome;
    }

    bool setWorker(Worker* current)
    {
        const QMutexLocker lock(&mutex);
        worker = current;
        return !isGivenUp;
    }

    void giveUp()
    {
        const QMutexLocker lock(&mutex);
        isGivenUp = true;
        if (worker)
            QMetaObject::invokeMethod(worker, &Worker::end, Qt::QueuedConnection);
    }
};

ProgramRun::ProgramRun(const ProgramStart& start, QObject* parent)
    : QObject(parent), m_control(std::make_shared<Control>())
{
    runInBackground(
        this, [control = m_control, start] { return control->run(start); },
        [this](const ProgramOutcome& outcome) { Q_EMIT finished(outcome); });
}

ProgramRun::~ProgramRun()
{
    m_control->giveUp();
}

} // namespace quillory
