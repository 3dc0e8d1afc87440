#include "document/DocumentReader.h"

#include "document/DocumentType.h"
#include "foundation/KeyedArchive.h"
#include "foundation/PropertyListReader.h"
#include "foundation/XmlPropertyListWriter.h"
#include "text/TextDecoder.h"
#include "text/TextEncoder.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>
#include <cstring>

namespace quillory {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("DocumentReader", text);
}

QString fileName(const ReadResult& result)
{
    return QFileInfo(result.path).fileName();
}

QString causeOf(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

/// Takes \a text as what the record's bytes say, and gathers what the window tells of them.
void takeText(ReadResult& result, StringEncoding encoding, const ByteLayout& layout,
              const TextSnapshot& text)
{
    result.record.encoding = encoding;
    result.layout = layout;
    result.text = text;
    result.lineBreaks = lineBreakCounts(text);
    const bool hasCr = result.lineBreaks.cr + result.lineBreaks.crLf > 0;
    result.format = hasCr ? detectLBFormat(text) : LineBreakFormat::unixLf;
    result.encodesBack = encodesBack(text, encoding, layout, result.record.dataFromFile->view());
}

/// False when the record's bytes do not decode in \a encoding; the record then keeps the encoding
/// without a text.
bool decodeBytes(ReadResult& result, StringEncoding encoding)
{
    const ByteBuffer& bytes = *result.record.dataFromFile;
    result.record.encoding = encoding;
    const std::optional<TextSnapshot> text = decode(bytes, encoding);
    if (text)
        takeText(result, encoding, layoutOf(bytes.view(), encoding), *text);
    return text.has_value();
}

/// The same in the encoding that the bytes turn out to be in; none when they are no text.
bool detectAndDecode(ReadResult& result, const FileBytes& file, const KnownText& known = {})
{
    const DetectedText detected = detectEncoding(file.bytes, file.encodingAttribute, known);
    result.record.encoding = detected.encoding;
    if (detected.isText())
        takeText(result, detected.encoding, detected.layout, detected.text);
    return detected.isText();
}

/// The bytes as the readers of lists take them; not copied, so \a buffer must outlive the result.
QByteArray asByteArray(const ByteBuffer& buffer)
{
    return QByteArray::fromRawData(buffer.data(), buffer.size().value());
}

void readArchive(ReadResult& result, const FileBytes& file)
{
    const auto archive = decodeKeyedArchive(asByteArray(file.bytes));
    if (!archive) {
        const QString cause = archive.failure().description();
        qWarning("could not deserialize %s: %s", qPrintable(result.path), qPrintable(cause));
        result.message = tr("“%1” is not a Quillory document, or it is damaged: %2. Open a copy of "
                            "it with another extension to see what it holds.")
                             .arg(fileName(result), cause);
        return;
    }
    const auto stored = [&](const char* key) { return archive->value(QLatin1StringView(key)); };
    DocumentRecord& record = result.record;
    record.dataFromFile = ByteBuffer(stored("text").toData());
    record.lbFormat = int(stored("lbFormat").toInteger());
    record.definitionTitle = stored("definitionTitle").toString();
    record.baseURL = stored("baseURL").toString();
    result.answer = true;
    decodeBytes(result, StringEncoding(quint32(stored("encoding").toInteger())));
}

int plistKindOf(PropertyListForm form)
{
    switch (form) {
    case PropertyListForm::openStep:
        return 1;
    case PropertyListForm::xml:
        return 2;
    case PropertyListForm::binary:
        return 3;
    }
    return 0;
}

/// A list that is text in an encoding that the file tells of stays as it is; any other is parsed,
/// and edited as XML.
void readPropertyListDocument(ReadResult& result, const FileBytes& file)
{
    DocumentRecord& record = result.record;
    record.isPlistFile = true;
    record.dataFromFile = file.bytes;
    // A binary list that holds nothing but a short text would pass for text as a whole.
    if (!file.bytes.view().startsWith("bplist") && detectAndDecode(result, file)) {
        result.answer = true;
        return;
    }
    record.encoding = StringEncoding::utf8;
    const auto stored = readPropertyList(asByteArray(file.bytes));
    if (!stored) {
        const QString cause = stored.failure().description();
        qWarning("could not deserialize %s: %s", qPrintable(result.path), qPrintable(cause));
        result.message = tr("“%1” is not a property list: %2. Open a copy of it with another "
                            "extension to edit it as text.")
                             .arg(fileName(result), cause);
        return;
    }
    const auto xml = writeXmlPropertyList(stored->list);
    if (!xml) {
        const QString cause = xml.failure().description();
        qWarning("error serializing to xml: %s", qPrintable(cause));
        result.message = tr("“%1” cannot be shown as XML: %2.").arg(fileName(result), cause);
        return;
    }
    record.plistKind = plistKindOf(stored->form);
    record.dataFromFile = ByteBuffer(*xml);
    result.answer = true;
    decodeBytes(result, StringEncoding::utf8);
}

/// Nothing of a failed read survives but the flags.
void dropContents(ReadResult& result)
{
    DocumentRecord flags;
    flags.isQuilloryDocument = result.record.isQuilloryDocument;
    flags.isPlistFile = result.record.isPlistFile;
    result.record = flags;
    result.text.reset();
}

/// What is the same whatever the kind of document; false, with a message, when the file could not
/// be read.
bool takeFile(ReadResult& result, const FileBytes& file)
{
    if (file.error != 0) {
        const QString cause = causeOf(file.error);
        if (result.type == DocumentType::propertyList)
            qWarning("error reading %s: %s", qPrintable(result.path), qPrintable(cause));
        result.message = tr("“%1” could not be read: %2.").arg(result.path, cause);
        return false;
    }
    result.identity = FileIdentity::of(file.status);
    result.hasEncodingAttribute = !file.encodingAttribute.isEmpty();
    return true;
}

} // namespace

ReadResult readDocument(const QString& path, const QString& type, const std::atomic_bool* cancelled)
{
    if (type != DocumentType::archive && QFileInfo(path).isDir()) {
        ReadResult result;
        result.path = path;
        result.type = type;
        result.message = tr("“%1” is a folder. Choose a file inside it.").arg(fileName(result));
        return result;
    }
    return readDocument(path, type, readFile(path, cancelled));
}

ReadResult readDocument(const QString& path, const QString& type, const FileBytes& file)
{
    const bool isArchive = type == DocumentType::archive;
    if (!isArchive && type != DocumentType::propertyList)
        return readText(path, file);
    ReadResult result;
    result.path = path;
    result.type = type;
    result.record.isQuilloryDocument = isArchive;
    if (!takeFile(result, file))
        return result;
    if (isArchive)
        readArchive(result, file);
    else
        readPropertyListDocument(result, file);
    if (!result.answer)
        dropContents(result);
    return result;
}

ReadResult readText(const QString& path, const FileBytes& file, const KnownText& known)
{
    ReadResult result;
    result.path = path;
    result.type = DocumentType::text;
    if (!takeFile(result, file))
        return result;
    result.record.dataFromFile = file.bytes;
    result.answer = true;
    detectAndDecode(result, file, known);
    return result;
}

bool decodeAs(ReadResult& result, StringEncoding encoding)
{
    if (!result.record.dataFromFile)
        return false;
    if (result.text && result.record.encoding == encoding)
        return true;
    ReadResult decoded = result;
    if (!decodeBytes(decoded, encoding))
        return false;
    result = std::move(decoded);
    return true;
}

} // namespace quillory
