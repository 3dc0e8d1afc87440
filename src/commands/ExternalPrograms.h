#pragma once

#include "commands/CommandLine.h"
#include "commands/ProgramRun.h"
#include "commands/TemporaryTexts.h"

#include <functional>
#include <memory>

namespace quillory {

class QPTextView;

/// The programs that a document's commands run: one at a time whose output is waited for, during
/// which the text cannot be edited, and any number of free-standing ones. Nothing here waits.
///
/// Every program finds the document in its environment: QUILLORY_FILE (the path), QUILLORY_NAME
/// (the file's name without its extension) and QUILLORY_FOLDER, all empty before the first save.
class ExternalPrograms : public QObject
{
    Q_OBJECT

public:
    /// What of the document matters here.
    struct File
    {
        QString path; ///< empty before the first save
        StringEncoding encoding = StringEncoding::utf8;
        bool canUsePDFPreview = false;
    };
    using Output = std::function<void(const TextSnapshot& output)>;

    /// \a editor outlives this; \a cachesFolder need not exist; \a file answers what holds now.
    ExternalPrograms(QPTextView& editor, const QString& cachesFolder, std::function<File()> file);
    ~ExternalPrograms() override;

    /// See TemporaryTexts.
    QString temporaryPath(const QString& mainExtension) const;
    /// Writes \a text to a temporary path in the document's encoding, and tells that path, or what
    /// went wrong; not on this thread.
    void writeTemporaryFile(const TextSnapshot& text, const QString& mainExtension,
                            const std::function<void(const Result<QString>& path)>& done);

    /// Runs the program, and tells \a done what it wrote to standard output followed directly by
    /// what it wrote to standard error, whatever its exit status is. Not told are programs that
    /// could not be run (an alert says so), were cancelled or outlived the document. The flag makes
    /// no difference.
    void performTerminalCommand(const CommandLine& command, bool withBOOLforReplacement,
                                const Output& done);
    /// Starts the program, which outlives the document, in the folder; an empty one stands for the
    /// user's home. Then, where \a mayOpenApp is true and the folder has an item called "App", asks
    /// for that to be opened.
    void performRunCommand(const CommandLine& command, const QString& andWorkingDicrectory,
                           bool mayOpenApp = false);
    /// Runs the program in the folder, then asks for the PDF at \a andPDFTitle, a path without its
    /// extension, to be shown or opened.
    void performLaTeXCommand(const CommandLine& command, const QString& andWorkingDicrectory,
                             const QString& andPDFTitle);

    /// True from started() to finished().
    bool isRunning() const { return m_run != nullptr; }
    /// Ends the program that is waited for, with all that it has started. Its output is lost.
    void cancel();

Q_SIGNALS:
    void alertRequested(const QString& title, const QString& message);
    /// A program that is waited for; \a command is for people to read.
    void started(const QString& command);
    void finished();
    /// Whether the text may be edited is another answer now.
    void editableChanged();
    /// The desktop's program for it is to open \a path.
    void openRequested(const QString& path);
    void pdfPreviewRequested(const QString& path);
    /// A LaTeX run came to its end; one that answered with an exit status other than 0, or made no
    /// new PDF, has failed. The PDF, if there is one, is shown afterwards.
    void typesettingFinished(const quillory::ProgramOutcome& outcome);

private:
    using Then = std::function<void(const ProgramOutcome&)>;

    ProgramStart startOf(const CommandLine& command, const QString& folder) const;
    void run(const ProgramStart& start, const Then& then);
    void endRun();
    void tellUnknownError();
    void showTypeset(const QString& pdf, const ProgramOutcome& outcome);

    QPTextView& m_editor;
    std::function<File()> m_file;
    TemporaryTexts m_texts;
    std::unique_ptr<ProgramRun> m_run;
    bool m_hasLocked = false;
};

} // namespace quillory
