#include "Samples.h"
#include "support/Folders.h"

#include "foundation/PropertyListScalars.h"
#include "foundation/XmlPropertyListWriter.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <ostream>

namespace quillory {
namespace {

QString samplePath(const QString& folder)
{
    return QStringLiteral(QUILLORY_SOURCE_DIR "/tests/foundation/data/") + folder;
}

bool matchesArray(const PropertyList& list, const QJsonArray& json)
{
    const auto* array = list.as<PropertyList::Array>();
    return array && std::equal(array->begin(), array->end(), json.begin(), json.end(), matches);
}

bool matchesDictionary(const PropertyList& list, const QJsonObject& json)
{
    const auto* dictionary = list.as<PropertyList::Dictionary>();
    if (!dictionary || dictionary->size() != json.size())
        return false;
    for (auto entry = json.begin(); entry != json.end(); ++entry) {
        if (!dictionary->contains(entry.key()) ||
            !matches(dictionary->value(entry.key()), entry.value()))
            return false;
    }
    return true;
}

bool matchesObject(const PropertyList& list, const QJsonObject& json)
{
    const QString key = json.size() == 1 ? json.begin().key() : QString();
    if (key == u"$data")
        return list == PropertyList(QByteArray::fromBase64(json[key].toString().toLatin1()));
    if (key == u"$date")
        return list == PropertyList(PropertyList::Date{json[key].toDouble()});
    if (key == u"$uid")
        return list == PropertyList(PropertyList::Uid{quint32(json[key].toInt())});
    if (key == u"$real")
        return list == PropertyList(*realFromText(json[key].toString()));
    return matchesDictionary(list, json);
}

} // namespace

QStringList sampleNames(const QString& folder, const QString& pattern)
{
    return QDir(samplePath(folder)).entryList({pattern}, QDir::Files, QDir::Name);
}

QByteArray sample(const QString& folder, const QString& name)
{
    QFile file(samplePath(folder) + u'/' + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject sampleVerdict(const QString& folder, const QString& name)
{
    return QJsonDocument::fromJson(sample(folder, name)).object();
}

bool matches(const PropertyList& list, const QJsonValue& json)
{
    switch (json.type()) {
    case QJsonValue::Bool:
        return list == PropertyList(json.toBool());
    case QJsonValue::Double: // the kind of number shows in the samples' XML renderings
        return (list.as<qint64>() || list.as<double>()) && list.toReal() == json.toDouble();
    case QJsonValue::String:
        return list == PropertyList(json.toString());
    case QJsonValue::Array:
        return matchesArray(list, json.toArray());
    default:
        return matchesObject(list, json.toObject());
    }
}

void PrintTo(const PropertyList& list, std::ostream* out)
{
    const auto xml = writeXmlPropertyList(list);
    *out << (xml ? xml->constData() : "a list that XML cannot hold");
}

} // namespace quillory
