#include "document/JournalForm.h"

#include <QCborMap>
#include <QCborValue>

namespace quillory {

namespace {

namespace key {
constexpr QLatin1StringView path("path");
constexpr QLatin1StringView type("type");
constexpr QLatin1StringView encoding("encoding");
constexpr QLatin1StringView lbFormat("lbFormat");
constexpr QLatin1StringView mark("mark");
constexpr QLatin1StringView bigEndian("bigEndian");
constexpr QLatin1StringView definition("definitionTitle");
constexpr QLatin1StringView baseURL("baseURL");
constexpr QLatin1StringView plist("isPlistFile");
constexpr QLatin1StringView plistKind("plistKind");
constexpr QLatin1StringView untitled("untitledNumber");
constexpr QLatin1StringView device("device");
constexpr QLatin1StringView inode("inode");
constexpr QLatin1StringView size("size");
constexpr QLatin1StringView modified("modified"); // nanoseconds since 1970
constexpr QLatin1StringView digest("digest");
constexpr QLatin1StringView record("recoveryRecord");
constexpr QLatin1StringView time("time"); // milliseconds since 1970, UTC
constexpr QLatin1StringView length("length");
constexpr QLatin1StringView holdsText("holdsText");
} // namespace key

QCborMap mapOf(const JournalForm& form)
{
    QCborMap map;
    map.insert(key::path, form.path);
    map.insert(key::type, form.type);
    map.insert(key::encoding, qint64(form.encoding));
    map.insert(key::lbFormat, form.lbFormat);
    map.insert(key::mark, form.layout.hasMark);
    map.insert(key::bigEndian, form.layout.bigEndian);
    map.insert(key::definition, form.definitionTitle);
    map.insert(key::baseURL, form.baseURL);
    map.insert(key::plist, form.isPlistFile);
    map.insert(key::plistKind, form.plistKind);
    map.insert(key::untitled, form.untitledNumber);
    map.insert(key::record, form.recoveryRecord);
    if (form.identity) {
        map.insert(key::device, qint64(form.identity->device));
        map.insert(key::inode, qint64(form.identity->inode));
        map.insert(key::size, form.identity->size);
        map.insert(key::modified, form.identity->modifiedNanos);
        map.insert(key::digest, form.identity->digest);
    }
    return map;
}

/// Empty where \a bytes are no map: what is left of a damaged one is not to be read.
QCborMap mapIn(const QByteArray& bytes)
{
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(bytes, &error);
    return error.error == QCborError::NoError ? value.toMap() : QCborMap();
}

JournalForm formOf(const QCborMap& map)
{
    JournalForm form;
    form.path = map.value(key::path).toString();
    form.type = map.value(key::type).toString();
    form.encoding = StringEncoding(quint32(map.value(key::encoding).toInteger()));
    form.lbFormat = int(map.value(key::lbFormat).toInteger());
    form.layout.hasMark = map.value(key::mark).toBool();
    form.layout.bigEndian = map.value(key::bigEndian).toBool();
    form.definitionTitle = map.value(key::definition).toString();
    form.baseURL = map.value(key::baseURL).toString();
    form.isPlistFile = map.value(key::plist).toBool();
    form.plistKind = int(map.value(key::plistKind).toInteger());
    form.untitledNumber = int(map.value(key::untitled).toInteger());
    form.recoveryRecord = map.value(key::record).toString();
    if (map.contains(key::inode)) {
        FileIdentity identity;
        identity.device = quint64(map.value(key::device).toInteger());
        identity.inode = quint64(map.value(key::inode).toInteger());
        identity.size = map.value(key::size).toInteger();
        identity.modifiedNanos = map.value(key::modified).toInteger();
        identity.digest = map.value(key::digest).toByteArray();
        form.identity = identity;
    }
    return form;
}

bool isSame(const std::optional<FileIdentity>& a, const std::optional<FileIdentity>& b)
{
    if (!a || !b)
        return !a && !b;
    return a->device == b->device && a->inode == b->inode && a->size == b->size &&
           a->modifiedNanos == b->modifiedNanos;
}

} // namespace

bool JournalForm::operator==(const JournalForm& other) const
{
    return path == other.path && type == other.type && encoding == other.encoding &&
           lbFormat == other.lbFormat && layout == other.layout &&
           definitionTitle == other.definitionTitle && baseURL == other.baseURL &&
           isPlistFile == other.isPlistFile && plistKind == other.plistKind &&
           untitledNumber == other.untitledNumber && recoveryRecord == other.recoveryRecord &&
           isSame(identity, other.identity);
}

QByteArray encoded(const JournalForm& form)
{
    return mapOf(form).toCborValue().toCbor();
}

QByteArray encoded(const JournalStart& start)
{
    QCborMap map = mapOf(start.form);
    map.insert(key::time, start.time.toMSecsSinceEpoch());
    map.insert(key::length, qint64(start.length));
    map.insert(key::holdsText, start.holdsText);
    return map.toCborValue().toCbor();
}

JournalForm decodedForm(const QByteArray& bytes)
{
    return formOf(mapIn(bytes));
}

JournalStart decodedStart(const QByteArray& bytes)
{
    const QCborMap map = mapIn(bytes);
    JournalStart start;
    start.form = formOf(map);
    start.time = QDateTime::fromMSecsSinceEpoch(map.value(key::time).toInteger(), Qt::UTC);
    start.length = TextOffset(map.value(key::length).toInteger());
    start.holdsText = map.value(key::holdsText).toBool();
    return start;
}

} // namespace quillory
