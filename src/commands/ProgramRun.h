#pragma once

#include "commands/CommandLine.h"
#include "text/StringEncoding.h"
#include "text/TextSnapshot.h"

#include <QObject>
#include <QProcessEnvironment>
#include <memory>

namespace quillory {

/// What is to be run, and how.
struct ProgramStart
{
    CommandLine command;
    QString workingDirectory; ///< empty for that of the editor
    QProcessEnvironment environment;
    /// In which output that is not UTF-8 is read.
    StringEncoding encoding = StringEncoding::none;
    /// A file that the program is to make; empty for none.
    QString product;
    /// Bytes, of both streams together; a program that writes more is ended.
    qsizetype mostOutput = qsizetype(1) << 30;
};

/// What became of a run.
struct ProgramOutcome
{
    enum class Ending
    {
        FailedToStart, ///< or the launch path is not absolute
        WroteTooMuch,  ///< and was ended
        Ran,           ///< and ended by itself, whatever it answered
    };

    Ending ending = Ending::FailedToStart;
    TextSnapshot output; ///< what it wrote to standard output, followed by standard error
    int exitStatus = 0;  ///< negative when a signal ended it
    bool hasProduct = false;
    bool isProductNew = false; ///< made, or written to, since the program was started
};

/// Runs one program and gathers what it writes, on another thread. The program reads nothing from
/// standard input, has a session and process group of its own, and inherits no open file.
class ProgramRun : public QObject
{
    Q_OBJECT

public:
    static constexpr int grace = 1000; ///< milliseconds from asking a program to end to ending it

    explicit ProgramRun(const ProgramStart& start, QObject* parent = nullptr);
    /// Ends the program, and whatever it has started in its process group; does not wait for that.
    ~ProgramRun() override;

Q_SIGNALS:
    /// Once, unless this is destroyed before.
    void finished(const quillory::ProgramOutcome& outcome);

private:
    struct Control;

    std::shared_ptr<Control> m_control;
};

} // namespace quillory
