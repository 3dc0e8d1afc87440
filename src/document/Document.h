#pragma once

#include "commands/ExternalPrograms.h"
#include "commands/FunctionNavigation.h"
#include "commands/ServerRequests.h"
#include "document/DocumentCommands.h"
#include "document/DocumentEnvironment.h"
#include "document/DocumentReader.h"
#include "document/DocumentRecord.h"
#include "document/DocumentWriter.h"
#include "document/EditJournal.h"
#include "document/EncodingList.h"
#include "document/GradualRead.h"
#include "editing/BlockCommands.h"
#include "editing/ChangeTracking.h"
#include "editing/Completion.h"
#include "editing/CurrentLineHighlight.h"
#include "editing/LineNavigation.h"
#include "editing/QPTextView.h"
#include "editing/TextReplacement.h"
#include "foundation/ApplicationFolders.h"
#include "syntax/SyntaxColouring.h"
#include "text/Overlay.h"

#include <QObject>
#include <QTimer>
#include <functional>

namespace quillory {

class DocumentWindowHost;

/// One open file: the record of its state, its text with undo and selections, and what opening,
/// saving and changing its encoding or line breaks do to them. Knows no window but through
/// DocumentWindowHost and its signals.
///
/// The life of a document: made; read (readFromURL, or readDocument on another thread and adopt);
/// opened, once a window stands (windowControllerDidLoadNib); edited and saved; destroyed. A large
/// file is opened with its beginning (adoptBeginning), and read to its end while it is shown; until
/// then it is neither edited nor saved.
class Document : public QObject
{
    Q_OBJECT

public:
    explicit Document(const DocumentEnvironment& environment, QObject* parent = nullptr);
    /// Whoever closes a document has saved it or given it up, so no text of it is kept aside,
    /// unless what is aside is all that is left of the file.
    ~Document() override;

    DocumentRecord& record() { return m_record; }
    const DocumentRecord& record() const { return m_record; }
    QPTextView& textView() { return m_textView; }
    TextStorage& textStorage() { return m_storage; }
    UndoManager& undoManager() { return m_undo; }
    /// What keeps the edits across a crash.
    EditJournal& journal() { return m_journal; }
    Overlay& overlay() { return m_overlay; }
    EncodingList& encodingsArrayController() { return m_encodings; }
    /// The document's cached copy of its text.
    const TextSnapshot& completeString() const { return m_storage.snapshot(); }

    QString path() const { return m_path; } ///< empty for a document that was never saved
    QString type() const { return m_type; }
    /// The file's name, or "Untitled" with a number that the controller gave.
    QString displayName() const;
    void setUntitledNumber(int number) { m_untitledNumber = number; }
    int untitledNumber() const { return m_untitledNumber; }

    /// True when saving would change what is on disk: the text, its encoding, its byte-order mark
    /// or the line-break format chosen for it.
    bool isDocumentEdited() const;

    /// The file's bytes did not decode; nothing may be written over them yet.
    bool isUndecoded() const { return m_undecoded; }
    bool hasByteOrderMark() const;
    /// Keeps or drops a UTF-8 byte-order mark at the next save.
    void setHasByteOrderMark(bool mark);
    /// The line breaks that the file had when it was read; all zero once it was saved.
    const LineBreakCounts& lineBreaksOnDisk() const { return m_lineBreaks; }
    /// Neither the encoding nor the line breaks nor the mark of the file would become others.
    bool hasFormOnDisk() const { return form() == m_savedForm; }
    /// False when writing the text as it is would not give the file's own bytes again.
    bool encodesBack() const { return m_encodesBack; }

    // Opening

    static QString windowNibName() { return QStringLiteral("Document"); }
    static bool autosavesInPlace() { return true; }
    static bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

    /// Reads the file at \a path as a \a ofType into the record; false when it cannot be opened.
    bool readFromURL(const QString& path, const QString& ofType);
    /// Takes what was read on another thread.
    void adopt(ReadResult result);
    /// Takes the beginning of a file; the document is loading until finishLoading().
    void adoptBeginning(const ReadResult& beginning);
    bool isLoading() const { return m_loading; }
    /// Puts what has come since at the end of the text. Not an edit, as little as what follows.
    void takeMore(const TextSnapshot& text);
    /// Takes what reading the whole file came to, which must have the answer yes. The carets and
    /// what is in sight stay where the text did not turn out to be another.
    void finishLoading(const GradualRead::Outcome& outcome);
    /// The open sequence: fills the text, the lists and the timers, once the window stands.
    void windowControllerDidLoadNib(DocumentWindowHost* window);
    /// Reads the file again, dropping the edits, in \a encoding or, when that is none, in the one
    /// found out anew; the text is replaced as one undoable step. The answer and the message are
    /// those of reading. Nothing changes when the bytes do not decode.
    ReadResult revert(StringEncoding encoding = StringEncoding::none);
    /// The same with what another thread has read.
    void takeReread(const ReadResult& result);

    /// Looks for a charset declaration or a mark in \a data. The guess is dropped: the answer is
    /// the document's own encoding.
    StringEncoding guessEncodingFromData(QByteArrayView data) const;

    // Line breaks

    static int detectLBFormatFromString(const TextSnapshot& text);
    /// Brings the text into the record's lbFormat; \a ignored has no effect.
    void changeLBFormatWithInt(int ignored);
    /// The same as one undoable step, announced; the chooser has stored the format before. A long
    /// text changes a little later, and cannot be edited until then.
    void changeLBFormatAction(int tag);

    // Encodings

    void loadEncodings();
    void selectEncoding();
    void delayedSelectEncoding();
    /// Takes the selected entry's encoding, and the text as it comes back from it; a text that does
    /// not fit stays as it is, and bytes that did not decode are opened in it. A long text changes
    /// a little later, and cannot be edited until then.
    void changeEncoding();
    void changeEncodingAction();

    // Definition and colours; SyntaxColouring says what they do

    SyntaxColouring& syntaxColouring() { return m_colouring; }
    ChangeTracking& changeTracking() { return m_tracking; }
    Completion& completion() { return m_completion; }
    CurrentLineHighlight& currentLineHighlight() { return m_highlight; }
    LineNavigation& lineNavigation() { return m_lineNavigation; }
    void goToLineVoid(qint64 number) { m_lineNavigation.goToLineVoid(number); }
    FunctionNavigation& functionNavigation() { return m_navigation; }
    NavigationItems allNavigationItems() const { return m_navigation.allNavigationItems(); }
    qint64 currentLineNumber() const { return m_navigation.currentLineNumber(); }
    void goToItemOnLine(qint64 lineNumber) { m_navigation.goToItemOnLine(lineNumber); }
    void goToPreviousFunction() { m_navigation.goToPreviousFunction(); }
    void goToNextFunction() { m_navigation.goToNextFunction(); }
    ServerRequests& serverRequests() { return m_serverRequests; }
    /// For who makes a window of it next: see SyntaxColouring.
    void prepareDefinitions();
    void loadDefinitions() { m_colouring.loadDefinitions(m_path); }
    void setDefinitionWithTitle(const QString& title) { m_colouring.setDefinitionWithTitle(title); }
    void applyDefinition() { m_colouring.applyDefinition(); }
    /// The same from the settings, which close; the chooser has selected the definition before.
    void applyDefinitionAction();
    bool denyColoring() const { return m_colouring.denyColoring(); }
    void setDenyColoring(bool deny) { m_colouring.setDenyColoring(deny); }

    // Commands on the selected text; BlockCommands says what they do

    void indentSelection() { m_blockCommands.indentSelection(); }
    void unindentSelection() { m_blockCommands.unindentSelection(); }
    void commentAction() { m_blockCommands.commentAction(); }
    void removeWhitespace() { m_blockCommands.removeWhitespace(); }
    void zapGremlins() { m_blockCommands.zapGremlins(); }
    void unwrap() { m_blockCommands.unwrap(); }
    void reformat() { m_blockCommands.reformat(); }
    void closeCurrentTag() { m_blockCommands.closeCurrentTag(); }

    // Actions of the definition; CommandExecution says what they do

    DocumentCommands& commands() { return m_commands; }
    void generateCommandsMenu() { m_commands.menu().generateCommandsMenu(); }
    void commandAction(const ActionEntry& sender) { m_commands.execution().commandAction(sender); }
    void insertOrReplaceTags(const QString& templateText)
    {
        m_commands.execution().insertOrReplaceTags(templateText);
    }

    /// What the document's commands run.
    ExternalPrograms& programs() { return m_programs; }
    const ExternalPrograms& programs() const { return m_programs; }

    // Saving

    /// Writes the document; \a result, where given, tells what became of the bytes. The answer is
    /// yes even in most cases in which they did not reach the disk.
    bool writeToURL(const QString& path, const QString& ofType, SaveResult* result = nullptr);
    /// The same in three steps, the middle one of which, SaveJob::run, may run on another thread.
    SaveJob saveJob(const QString& path, const QString& ofType) const;
    void finishSave(const SaveJob& job, const SaveResult& result);
    /// Of the file as it was last read or saved; none for a document that was never saved.
    const std::optional<FileIdentity>& fileIdentity() const { return m_identity; }
    /// The file's bytes stand elsewhere on the disk, or under another date.
    void setFileIdentity(const FileIdentity& identity) { m_identity = identity; }
    /// The file was given another name.
    void followRename(const QString& path)
    {
        const QString before = std::exchange(m_path, path);
        followExtension(before);
        Q_EMIT renamed(before, path);
        Q_EMIT recordChanged();
    }
    /// The text is in the recovery store, from where it goes once it is saved or given up.
    void takeRecoveryRecord(const QString& id) { m_recoveryRecord = id; }
    /// The next save may replace a file that another program changed.
    void acceptFileOnDisk() { m_identity.reset(); }

public Q_SLOTS:
    /// Applies the preferences to the text view, its colours and the visible page.
    void textViewSettings();
    /// Colours what is seen; for whenever that became another part of the text.
    void pageRecolour() { m_colouring.pageRecolour(); }
    void delayedSettingsSheet();

Q_SIGNALS:
    void settingsSheetRequested();
    void settingsPopoverShouldClose();
    /// The preferences changed, or what they apply to; the window follows.
    void textViewSettingsApplied();
    void editedChanged();
    /// Something that the user has to be told in so many words.
    void alertRequested(const QString& title, const QString& message);
    /// The file was given another name; not for a save.
    void renamed(const QString& from, const QString& to);
    /// Encoding, line-break format, byte-order mark, path or definition changed.
    void recordChanged();

private:
    void fillText();
    void replaceSilently(TextRange range, const TextSnapshot& text);
    void takeForm(const ReadResult& result);
    void takeDefinition();
    void followExtension(const QString& before);
    void readBytesAs(StringEncoding encoding);
    using NewText = std::function<TextSnapshot()>;
    void changeWholeText(const QString& actionName, const NewText& newText);
    void replaceWholeText(const TextSnapshot& text);

    /// What a save wrote, beside the text.
    struct SavedForm
    {
        StringEncoding encoding = StringEncoding::none;
        int lbFormat = 0;
        ByteLayout layout;
        bool operator==(const SavedForm&) const = default;
    };
    LineBreakFormat lineBreakFormat() const { return LineBreakFormat(m_record.lbFormat); }
    JournalForm journalForm() const;
    SavedForm form() const { return {m_record.encoding, m_record.lbFormat, m_layout}; }

    /// The last to go, so that a long text is freed on another thread.
    struct Remains
    {
        TextSnapshot text;
        std::optional<ByteBuffer> bytes;
        ~Remains();
    };

    Remains m_remains;
    const DocumentEnvironment& m_environment;
    DocumentRecord m_record;
    TextStorage m_storage;
    EditJournal m_journal; ///< hears of each edit before anyone who may edit on
    UndoManager m_undo;
    QPTextView m_textView;
    Overlay m_overlay;
    SyntaxColouring m_colouring;
    ChangeTracking m_tracking;
    BlockCommands m_blockCommands;
    Completion m_completion;
    CurrentLineHighlight m_highlight;
    LineNavigation m_lineNavigation{m_textView};
    FunctionNavigation m_navigation{m_textView, m_colouring, m_lineNavigation};
    ServerRequests m_serverRequests{
        m_environment.folders.plugins, [this] {
            return ServerRequests::TextForm{m_record.encoding, lineBreakFormat()};
        }};
    TextReplacement m_replacement;
    ExternalPrograms m_programs{m_textView, m_environment.folders.caches,
                                [this]() -> ExternalPrograms::File {
                                    return {m_path, m_record.encoding, m_record.canUsePDFPreview};
                                }};
    DocumentCommands m_commands{m_textView,
                                m_colouring,
                                m_programs,
                                m_serverRequests,
                                m_environment.folders,
                                [this]() -> CommandSurroundings::File {
                                    return {m_path, m_record.mainExtension, m_record.encoding};
                                }};
    EncodingList m_encodings;
    QTimer m_settingsTimer;
    QString m_path;
    QString m_type;
    int m_untitledNumber = 1;
    std::optional<TextSnapshot> m_decoded; ///< read, not yet in the text view
    LineBreakFormat m_decodedFormat = LineBreakFormat::none;
    ByteLayout m_layout;
    LineBreakCounts m_lineBreaks;
    std::optional<FileIdentity> m_identity;
    SavedForm m_savedForm;
    QString m_recoveryRecord;
    bool m_hasEncodingAttribute = false;
    bool m_fileDamaged = false; ///< by a save that failed half-way
    bool m_loading = false;     ///< the text is only the beginning of the file's
    bool m_undecoded = false;
    bool m_encodesBack = true;
};

} // namespace quillory
