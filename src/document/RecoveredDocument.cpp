#include "document/RecoveredDocument.h"

#include "document/DocumentType.h"
#include "document/VersionReading.h"
#include "text/TextDecoder.h"

#include <QFile>
#include <fcntl.h>

namespace quillory {

namespace {

using State = RecoveredDocument::State;
using File = RecoveredDocument::File;

File fileOf(FileOps& ops, const JournalForm& form)
{
    if (form.path.isEmpty())
        return File::None;
    const auto file = FileHandle::open(ops, QFile::encodeName(form.path), O_RDONLY | O_NONBLOCK);
    if (!file)
        return form.identity && form.identity->inode != 0 ? File::Gone : File::Unchanged;
    const auto status = ops.status(file->descriptor());
    return status && form.identity && form.identity->matches(*status) ? File::Unchanged
                                                                      : File::Changed;
}

/// The file's text as it is now, in \a encoding.
std::optional<TextSnapshot> textInFile(const JournalForm& form, StringEncoding encoding)
{
    ReadResult read = readDocument(form.path, form.type);
    if (!read.answer || !decodeAs(read, encoding))
        return std::nullopt;
    return read.text;
}

/// The text that the file at \a path held when it was as in \a form, if that is kept.
std::optional<TextSnapshot> textInVersions(VersionStore& versions, const QString& path,
                                           const JournalForm& form)
{
    if (!form.identity)
        return std::nullopt;
    const auto kept = versions.versions(path);
    const FileIdentity& wanted = *form.identity;
    for (const FileVersion& version : *kept) {
        const bool isOfThatTime =
            version.time.toMSecsSinceEpoch() == wanted.modifiedNanos / 1'000'000;
        if (version.size != wanted.size || !(isOfThatTime || version.digest == wanted.digest))
            continue;
        ReadResult read = readVersion(versions, version, form.type);
        if (read.answer && decodeAs(read, form.encoding))
            return read.text;
    }
    return std::nullopt;
}

bool isSavedAlike(const JournalForm& a, const JournalForm& b)
{
    return a.encoding == b.encoding && a.lbFormat == b.lbFormat && a.layout == b.layout;
}

ReadResult documentOf(const JournalForm& form, const TextSnapshot& text)
{
    ReadResult document;
    document.answer = true;
    document.path = form.path;
    document.type = form.type.isEmpty() ? DocumentType::text : form.type;
    DocumentRecord& record = document.record;
    record.dataFromFile = ByteBuffer();
    record.encoding = form.encoding;
    record.lbFormat = form.lbFormat;
    record.definitionTitle = form.definitionTitle;
    record.baseURL = form.baseURL;
    record.isQuilloryDocument = form.type == DocumentType::archive;
    record.isPlistFile = form.isPlistFile;
    record.plistKind = form.plistKind;
    document.text = text;
    document.layout = form.layout;
    document.format = LineBreakFormat(form.lbFormat);
    document.identity = form.identity.value_or(FileIdentity());
    return document;
}

RecoveredDocument piecesOf(const JournalReader& reader)
{
    RecoveredDocument recovered;
    recovered.state = State::Pieces;
    JournalForm form;
    form.encoding = StringEncoding::utf8;
    form.lbFormat = int(LineBreakFormat::unixLf);
    form.definitionTitle = reader.form().definitionTitle;
    recovered.document = documentOf(form, reader.pieces());
    return recovered;
}

/// Without what concerns the journal's file.
RecoveredDocument recoveredOf(FileOps& ops, const JournalReader& reader, VersionStore* versions)
{
    const JournalForm& form = reader.form();
    const JournalStart& start = reader.start();
    RecoveredDocument recovered;
    recovered.file = fileOf(ops, form);
    std::optional<TextSnapshot> base;
    if (start.holdsText)
        base = TextSnapshot();
    else
        base = textInFile(form, start.form.encoding);
    auto replay = base ? reader.replay(*base) : std::nullopt;
    if (!replay && versions) {
        base = textInVersions(*versions, form.path, start.form);
        replay = base ? reader.replay(*base) : std::nullopt;
    }
    if (!replay) {
        RecoveredDocument pieces = piecesOf(reader);
        pieces.file = recovered.file;
        return pieces;
    }
    bool isInFile = isSavedAlike(form, start.form) && replay->text == replay->base;
    if (recovered.file == File::Gone)
        isInFile = false;
    else if (recovered.file == File::Changed)
        isInFile = textInFile(form, form.encoding) == replay->text;
    if (isInFile)
        return recovered;
    recovered.state = State::Text;
    recovered.document = documentOf(form, replay->text);
    recovered.untitledNumber = form.untitledNumber;
    recovered.hasIdentity = form.identity.has_value();
    recovered.recoveryRecord = form.recoveryRecord;
    return recovered;
}

} // namespace

RecoveredDocument recoverJournal(FileOps& ops, RecoveryStore& store, const QString& id,
                                 VersionStore* versions)
{
    auto file = JournalFile::openLocked(ops, store, id);
    if (!file)
        return {};
    const JournalReader reader(ops, file->descriptor());
    const QByteArray path = JournalFile::pathOf(store, id);
    RecoveredDocument recovered;
    if (reader.isReadable())
        recovered = recoveredOf(ops, reader, versions);
    if (recovered.state == State::Nothing) {
        if (reader.isReadable() && !reader.isCut()) {
            (void)ops.remove(path);
            return recovered;
        }
        const QByteArray aside = path + ".unreadable";
        const FileStatus renamed = ops.rename(path, aside, FileOps::Replacing::Yes);
        recovered.keptAside = QFile::decodeName(renamed ? aside : path);
        recovered.document.path = reader.form().path;
        qWarning("quillory: the journal “%s” is damaged, and kept.",
                 qUtf8Printable(recovered.keptAside));
        return recovered;
    }
    recovered.time = reader.start().time;
    recovered.isCut = reader.isCut();
    recovered.end = reader.end();
    recovered.holdsBase = reader.start().holdsText;
    recovered.journal = std::make_shared<FileHandle>(*std::move(file));
    return recovered;
}

RecoveredDocument recoverRecord(RecoveryStore& store, const RecoveryRecord& record)
{
    QByteArray bytes;
    const bool isWhole = store.bytes(record.name)([&bytes](QByteArrayView piece) {
        bytes.append(piece);
        return true;
    });
    JournalForm form;
    form.encoding = record.entry.encoding;
    form.lbFormat = record.entry.lbFormat;
    if (!record.isPrevious) {
        form.path = record.entry.path;
        form.type = DocumentType::ofFile(form.path);
    }
    const ByteBuffer buffer(bytes);
    form.layout = layoutOf(buffer.view(), form.encoding);
    const auto text = decode(buffer, form.encoding);
    RecoveredDocument recovered;
    if (!text || text->isEmpty())
        return recovered; // of bytes that are no text nothing can be shown; they stay
    recovered.state = State::Text;
    recovered.file = form.path.isEmpty() ? File::None : File::Changed;
    recovered.time = record.entry.time;
    recovered.isCut = !isWhole;
    recovered.document = documentOf(form, *text);
    recovered.hasIdentity = true; // one that no file has, so that saving asks
    recovered.recoveryRecord = record.id;
    return recovered;
}

RecoverableTexts recoverableTexts(FileOps& ops, RecoveryStore& store)
{
    RecoverableTexts found;
    found.journals = JournalFile::idsIn(ops, store);
    const auto records = store.records();
    if (!records || records->isEmpty())
        return found;
    QStringList known;
    for (const QString& id : std::as_const(found.journals)) {
        const auto file = FileHandle::open(ops, JournalFile::pathOf(store, id), O_RDONLY);
        if (file)
            known.append(JournalReader(ops, file->descriptor()).form().recoveryRecord);
    }
    for (const RecoveryRecord& record : *records) {
        if (!known.contains(record.id))
            found.records.append(record);
    }
    return found;
}

} // namespace quillory
