#include "document/Document.h"

#include "document/CharsetProbe.h"
#include "document/CloudContainer.h"
#include "document/DocumentType.h"
#include "document/DocumentWindowHost.h"
#include "document/FirstStart.h"
#include "document/RecoveryStore.h"
#include "document/TextConversion.h"
#include "editing/SelectionLines.h"
#include "foundation/Background.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"

#include <QFileInfo>
#include <QSignalBlocker>

namespace quillory {

namespace {

using namespace std::chrono_literals;

constexpr auto settingsSheetDelay = 350ms;
constexpr auto textViewSettingsDelay = 10ms;
constexpr auto highlightDelay = 100ms;      // after the settings
constexpr TextOffset quickLength = 1 << 20; // what is worked through without a noticeable wait
constexpr std::array<int, 4> titleBarButtonPositions{21, 48, 71, 97}; // points

} // namespace

Document::Document(const DocumentEnvironment& environment, QObject* parent)
    : QObject(parent), m_environment(environment),
      m_journal(m_storage, environment.fileOps, environment.recovery,
                [this] { return journalForm(); }),
      m_undo(m_storage), m_textView(m_storage, m_undo, &environment.defaults),
      m_colouring(m_storage, m_overlay, environment.folders, environment.defaults),
      m_tracking(m_textView, environment.defaults, m_colouring),
      m_blockCommands(
          m_textView,
          [this] {
              const Definition* definition = m_colouring.definition();
              return definition ? definition->string(QLatin1StringView("firstSingleLineComment"))
                                      .value_or(QString())
                                : QString();
          }),
      m_completion(m_textView, environment.defaults, m_colouring.state().autocompletionArray),
      m_highlight(m_textView, m_overlay, environment.defaults),
      m_replacement(m_textView, environment.defaults, environment.folders.replacementsFile())
{
    connect(&m_storage, &TextStorage::edited, &m_overlay, &Overlay::textChanged);
    connect(&m_tracking, &ChangeTracking::pageRecolourRequested, &m_colouring,
            &SyntaxColouring::pageRecolourSoon);
    connect(&m_tracking, &ChangeTracking::highlightRequested, &m_highlight,
            &CurrentLineHighlight::highlight);
    connect(&m_tracking, &ChangeTracking::beep, &m_textView, &QPTextView::beep);
    connect(&m_colouring, &SyntaxColouring::plainColoursChanged, this, [this] {
        const std::optional<PlainColours>& theme = m_colouring.plainColours();
        m_highlight.setThemeColour(theme ? theme->highlight : std::nullopt);
    });
    connect(&m_colouring, &SyntaxColouring::definitionSelected, this, &Document::takeDefinition);
    connect(&m_undo, &UndoManager::cleanChanged, this, &Document::editedChanged);
    connect(this, &Document::recordChanged, this, &Document::editedChanged);
    connect(this, &Document::recordChanged, &m_journal,
            [this] { m_journal.noteForm(isDocumentEdited()); });
    connect(&m_blockCommands, &BlockCommands::editableChanged, this, &Document::recordChanged);
    connect(&m_blockCommands, &BlockCommands::alertRequested, this, &Document::alertRequested);
    connect(&m_serverRequests, &ServerRequests::alertRequested, this, &Document::alertRequested);
    m_settingsTimer.setSingleShot(true);
    m_settingsTimer.setInterval(textViewSettingsDelay);
    connect(&m_settingsTimer, &QTimer::timeout, this, &Document::textViewSettings);
}

Document::~Document()
{
    if (!m_fileDamaged && !m_journal.isLeft())
        (void)m_environment.recovery.remove(m_recoveryRecord); // what stays behind only takes room
    m_remains = {completeString(), m_record.dataFromFile};
}

Document::Remains::~Remains()
{
    if (text.length() > quickLength || (bytes && bytes->size().value() > quickLength))
        releaseInBackground(std::pair(std::move(text), std::move(bytes)));
}

QString Document::displayName() const
{
    if (!m_path.isEmpty())
        return QFileInfo(m_path).fileName();
    return m_untitledNumber > 1 ? tr("Untitled %1").arg(m_untitledNumber) : tr("Untitled");
}

JournalForm Document::journalForm() const
{
    return {m_path,
            m_type,
            m_record.encoding,
            m_record.lbFormat,
            m_layout,
            m_record.definitionTitle,
            m_record.baseURL,
            m_record.isPlistFile,
            m_record.plistKind,
            m_untitledNumber,
            m_identity,
            m_recoveryRecord};
}

bool Document::isDocumentEdited() const
{
    return !m_undo.isClean() || form() != m_savedForm;
}

bool Document::hasByteOrderMark() const
{
    return m_record.encoding == StringEncoding::utf8 && m_layout.hasMark;
}

void Document::setHasByteOrderMark(bool mark)
{
    if (m_record.encoding != StringEncoding::utf8 || m_layout.hasMark == mark)
        return;
    m_layout.hasMark = mark;
    Q_EMIT recordChanged();
}

// Opening

bool Document::readFromURL(const QString& path, const QString& ofType)
{
    ReadResult result = readDocument(path, ofType);
    const bool answer = result.answer;
    adopt(std::move(result));
    return answer;
}

void Document::adopt(ReadResult result)
{
    m_record = std::move(result.record);
    if (!result.answer)
        return;
    m_path = result.path;
    m_type = result.type;
    m_decoded = std::move(result.text);
    m_decodedFormat = result.format;
    m_layout = result.layout;
    m_lineBreaks = result.lineBreaks;
    m_encodesBack = result.encodesBack;
    m_identity = result.identity;
    m_hasEncodingAttribute = result.hasEncodingAttribute;
    if (m_record.isQuilloryDocument)
        selectEncoding();
}

void Document::adoptBeginning(const ReadResult& beginning)
{
    adopt(beginning);
    m_loading = true;
    m_textView.setEditable(false);
}

void Document::takeMore(const TextSnapshot& text)
{
    replaceSilently({completeString().length(), 0}, text);
}

void Document::finishLoading(const GradualRead::Outcome& outcome)
{
    const EditJournal::NewBase newBase(m_journal);
    const ReadResult& result = outcome.result;
    TextSnapshot before = completeString();
    const TextSnapshot text = result.text.value_or(TextSnapshot());
    const TextRange wrong = TextRange::between(outcome.kept, before.length());
    const std::vector<Selection> selections = m_textView.selections();
    m_loading = false;
    m_undecoded = !result.text;
    replaceSilently(wrong, text.slice(TextRange::between(outcome.kept, text.length())));
    if (!wrong.isEmpty()) {
        m_textView.setSelections(onSameLines(selections, before, text), selections.size() - 1);
        releaseInBackground(std::move(before));
    }
    takeForm(result);
    m_record.dataFromFile = m_undecoded ? result.record.dataFromFile : ByteBuffer();
    m_record.lbFormat = int(result.format);
    m_hasEncodingAttribute = result.hasEncodingAttribute;
    selectEncoding();
    m_savedForm = form();
    m_textView.setEditable(!m_undecoded);
    Q_EMIT recordChanged();
}

/// Neither undoable nor an edit: the document stands for its file as it did before.
void Document::replaceSilently(TextRange range, const TextSnapshot& text)
{
    const EditJournal::NewBase newBase(m_journal);
    const QSignalBlocker quiet(m_undo);
    m_storage.replaceCharactersInRange(range, text);
    m_undo.removeAllActions();
    m_undo.markClean();
}

void Document::windowControllerDidLoadNib(DocumentWindowHost* window)
{
    DocumentWindowHost none;
    DocumentWindowHost& host = window ? *window : none;
    if (window)
        m_colouring.setVisibleRangeSource([window] { return window->visibleTextRange(); });
    host.wireCloudTable();
    populateApplicationSupport(m_environment.folders, m_environment.defaults);
    loadEncodings();
    host.centreWindow();
    host.placeTitleBarButtons(titleBarButtonPositions);
    fillText();
    connect(&m_environment.notifications, &NotificationCenter::posted, this,
            [this](const QString& name) {
                if (name == notifications::preferencesDidChange)
                    textViewSettings();
            });
    threadedIcloudCheck(CloudContainer::ofThisSession(), m_environment.defaults, this);
    m_settingsTimer.start();
    host.setThumbnailBackground({0.82F, 0.847F, 0.878F, 1.0F});
}

/// The text, by kind of document; a new one starts as UTF-8 with Unix line breaks.
void Document::fillText()
{
    const EditJournal::NewBase newBase(m_journal);
    const bool isNew = !m_record.dataFromFile;
    const std::optional<TextSnapshot> text = std::exchange(m_decoded, std::nullopt);
    if (isNew) {
        m_record.isQuilloryDocument = false;
        m_record.lbFormat = int(LineBreakFormat::unixLf);
        m_record.encoding = StringEncoding::utf8;
        m_record.plistKind = 0;
        m_layout = standardLayout(m_record.encoding);
    } else if (m_record.isQuilloryDocument) {
        m_record.plistKind = 0;
    } else if (text) {
        m_record.lbFormat = int(m_decodedFormat);
    }
    m_undecoded = !isNew && !text;
    if (text) {
        m_storage.replaceCharactersInRange(m_storage.snapshot().range(), *text);
        // From here on only text that lies in the bytes keeps them.
        m_record.dataFromFile = ByteBuffer();
    }
    selectEncoding();
    if (m_record.isQuilloryDocument) {
        setDefinitionWithTitle(m_record.definitionTitle);
    } else {
        m_record.isTextDefinition = true;
        m_record.colorNumbers = false;
        loadDefinitions();
    }
    m_undo.removeAllActions();
    m_undo.markClean();
    m_savedForm = form();
    if (isNew && !m_environment.defaults.value(keys::dontAsk))
        QTimer::singleShot(settingsSheetDelay, this, &Document::delayedSettingsSheet);
    Q_EMIT recordChanged();
}

ReadResult Document::revert(StringEncoding encoding)
{
    ReadResult result = readDocument(m_path, m_type);
    if (result.answer && encoding != StringEncoding::none && !decodeAs(result, encoding))
        result.answer = false;
    takeReread(result);
    return result;
}

void Document::takeReread(const ReadResult& result)
{
    if (!result.answer || !result.text)
        return;
    const EditJournal::NewBase newBase(m_journal);
    const bool keepsFormat = result.record.isQuilloryDocument;
    m_record.plistKind = keepsFormat ? 0 : result.record.plistKind;
    m_record.isPlistFile = result.record.isPlistFile;
    m_record.lbFormat = keepsFormat ? result.record.lbFormat : int(result.format);
    m_record.dataFromFile = ByteBuffer();
    takeForm(result);
    m_undecoded = false;
    m_undo.beginUndoGrouping(m_textView.selections());
    replaceWholeText(*result.text);
    m_undo.setActionName(tr("Revert"));
    m_undo.endUndoGrouping(m_textView.selections());
    selectEncoding();
    m_undo.markClean();
    m_savedForm = form();
    m_textView.didChangeText();
    Q_EMIT recordChanged();
}

/// How the bytes of a text that was read again, or to its end, stand on the disk.
void Document::takeForm(const ReadResult& result)
{
    m_record.encoding = result.record.encoding;
    m_layout = result.layout;
    m_lineBreaks = result.lineBreaks;
    m_encodesBack = result.encodesBack;
    m_identity = result.identity;
}

StringEncoding Document::guessEncodingFromData(QByteArrayView data) const
{
    (void)probedEncoding(data);
    return m_record.encoding;
}

void Document::textViewSettings()
{
    UserDefaults& defaults = m_environment.defaults;
    m_highlight.changeHighlight();
    QTimer::singleShot(highlightDelay, &m_highlight, &CurrentLineHighlight::highlight);
    const bool inspects = defaults.value(keys::enableWebInspector);
    if (defaults.value(keys::webKitDeveloperExtras) != inspects) {
        defaults.setValue(keys::webKitDeveloperExtras, inspects);
        defaults.synchronize(); // the preview, another program, reads it
    }
    Q_EMIT textViewSettingsApplied();
    m_colouring.prepareColoring();
    pageRecolour();
    m_textView.didChangeText();
}

void Document::prepareDefinitions()
{
    if (m_path.isEmpty() || m_record.isQuilloryDocument)
        return;
    populateApplicationSupport(m_environment.folders, m_environment.defaults);
    m_colouring.prepareDefinitions(m_path);
}

void Document::takeDefinition()
{
    m_record.takeDefinition(*m_colouring.definition());
    Q_EMIT recordChanged();
}

void Document::applyDefinitionAction()
{
    applyDefinition();
    Q_EMIT settingsPopoverShouldClose();
}

void Document::delayedSettingsSheet()
{
    Q_EMIT settingsSheetRequested();
}

// Line breaks and encodings

int Document::detectLBFormatFromString(const TextSnapshot& text)
{
    return int(detectLBFormat(text));
}

void Document::changeLBFormatWithInt(int)
{
    replaceWholeText(converted(completeString(), LineBreakFormat(m_record.lbFormat)));
}

void Document::changeLBFormatAction(int)
{
    const TextSnapshot text = completeString();
    const LineBreakFormat format{m_record.lbFormat};
    changeWholeText(tr("Changed Line Endings"), [=] { return converted(text, format); });
    Q_EMIT settingsPopoverShouldClose();
}

void Document::loadEncodings()
{
    m_encodings.load(m_environment.folders.applicationSupport + QStringLiteral("/Encodings.plist"));
}

void Document::selectEncoding()
{
    m_encodings.selectNumber(m_record.encoding);
}

void Document::delayedSelectEncoding()
{
    QTimer::singleShot(0, this, &Document::selectEncoding);
}

void Document::changeEncoding()
{
    const std::optional<EncodingEntry> entry = m_encodings.selected();
    if (!entry)
        return;
    if (m_undecoded) {
        readBytesAs(entry->number);
        return;
    }
    m_record.encoding = entry->number;
    m_layout = standardLayout(entry->number);
    // A text that does not fit stays as it is; one that fits comes back as it was or, where the
    // encoding has another character for one of its own, with that.
    const TextSnapshot text = completeString();
    changeWholeText(tr("Changed Encoding"), [text, encoding = entry->number] {
        return thereAndBack(text, encoding).value_or(text);
    });
}

/// Opens the bytes, which did not decode so far, in \a encoding; where that fails too the document
/// stays as it is.
void Document::readBytesAs(StringEncoding encoding)
{
    ReadResult read;
    read.answer = true;
    read.path = m_path;
    read.record = m_record;
    read.hasEncodingAttribute = m_hasEncodingAttribute;
    read.identity = m_identity.value_or(FileIdentity());
    const auto decoded = [read, encoding] {
        ReadResult result = read;
        decodeAs(result, encoding);
        return result;
    };
    if (m_record.dataFromFile->size().value() <= quickLength)
        takeReread(decoded());
    else
        runInBackground(this, decoded, [this](const ReadResult& result) { takeReread(result); });
}

void Document::changeEncodingAction()
{
    changeEncoding();
    Q_EMIT settingsPopoverShouldClose();
}

/// Puts what \a newText answers in the place of the whole text, as one announced step. A long text
/// is made on another thread, and cannot be edited until then.
void Document::changeWholeText(const QString& actionName, const NewText& newText)
{
    const auto apply = [this, actionName](const TextSnapshot& text) {
        m_undo.beginUndoGrouping(m_textView.selections());
        m_storage.beginEditing();
        replaceWholeText(text);
        m_storage.endEditing();
        m_textView.didChangeText();
        m_undo.setActionName(actionName);
        m_undo.endUndoGrouping(m_textView.selections());
        textViewSettings();
        Q_EMIT recordChanged();
    };
    if (completeString().length() <= quickLength) {
        apply(newText());
        return;
    }
    m_textView.setEditable(false);
    Q_EMIT recordChanged();
    runInBackground(this, newText, [this, apply](const TextSnapshot& text) {
        m_textView.setEditable(true);
        apply(text);
    });
}

/// Puts \a text in the place of the whole text, undoably; the carets stay on their lines.
void Document::replaceWholeText(const TextSnapshot& text)
{
    const TextSnapshot before = completeString();
    const std::vector<Selection> selections = m_textView.selections();
    m_undo.replaceCharactersInRange(before.range(), text);
    m_textView.setSelections(onSameLines(selections, before, text), selections.size() - 1);
}

// Saving

bool Document::writeToURL(const QString& path, const QString& ofType, SaveResult* result)
{
    const SaveJob job = saveJob(path, ofType);
    const SaveResult done = job.run(m_environment.fileOps, m_environment.recovery);
    finishSave(job, done);
    if (result)
        *result = done;
    return done.answer;
}

SaveJob Document::saveJob(const QString& path, const QString& ofType) const
{
    SaveJob job;
    job.path = path;
    job.type = ofType;
    job.text = completeString();
    job.record = m_record;
    job.record.dataFromFile.reset();
    job.layout = m_layout;
    job.isUndecoded = m_undecoded;
    job.isIncomplete = m_loading;
    job.hasEncodingAttribute = m_hasEncodingAttribute && path == m_path;
    if (path == m_path) {
        job.expected = m_identity;
        job.encodingOnDisk = m_savedForm.encoding;
    }
    if (!m_undo.isClean() || path != m_path || !hasFormOnDisk() || m_lineBreaks.isMixed() ||
        !m_encodesBack)
        job.versions = m_environment.versions; // else the same is written again
    job.recoveryRecord = m_recoveryRecord;
    return job;
}

void Document::finishSave(const SaveJob& job, const SaveResult& result)
{
    m_recoveryRecord = result.recoveryRecord;
    m_fileDamaged = result.damaged || (m_fileDamaged && !result.written);
    // A save that failed may have touched the file all the same: reserving room ages it.
    if (result.identity && (result.written || job.path == m_path))
        m_identity = result.identity;
    if (!result.written) {
        m_journal.noteNotSaved(isDocumentEdited());
        return;
    }
    const QString pathBefore = std::exchange(m_path, job.path);
    m_type = job.type;
    m_lineBreaks = {};
    m_encodesBack = true;
    m_record.isQuilloryDocument = job.type == DocumentType::archive;
    if (!m_record.dataFromFile)
        m_record.dataFromFile = ByteBuffer();
    m_savedForm = {job.record.encoding, job.record.lbFormat, job.layout};
    // Typing may have gone on while the bytes were written.
    if (completeString().isSameTree(job.text))
        m_undo.markClean();
    else
        m_undo.markDirty();
    followExtension(pathBefore);
    m_journal.noteSaved(job.text, result.readsBack && form() == m_savedForm);
    Q_EMIT recordChanged();
}

/// A text that was saved with another extension than it had gets the definition for it.
void Document::followExtension(const QString& before)
{
    const bool isText = !m_record.isQuilloryDocument && !m_record.isPlistFile;
    if (isText && QFileInfo(before).suffix() != QFileInfo(m_path).suffix())
        m_colouring.followExtension(m_path);
}

} // namespace quillory
