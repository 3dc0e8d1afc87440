#include "foundation/KeyedArchive.h"

#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/PropertyListReader.h"

#include <optional>

namespace quillory {
namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;
using Uid = PropertyList::Uid;

const QString nullObject = QStringLiteral("$null");
const QString archiverKey = QStringLiteral("$archiver");
const QString classKey = QStringLiteral("$class");
const QString classesKey = QStringLiteral("$classes");
const QString classNameKey = QStringLiteral("$classname");
const QString keysKey = QStringLiteral("NS.keys");
const QString objectsKey = QStringLiteral("$objects");
const QString rootKey = QStringLiteral("root");
const QString topKey = QStringLiteral("$top");
const QString valuesKey = QStringLiteral("NS.objects");
const QString versionKey = QStringLiteral("$version");

/// What may stand in the array of objects as it is. A dictionary there is a record.
bool isInlineLeaf(const PropertyList& value)
{
    return value.depth() == 0 && !value.as<Uid>() && !value.as<PropertyList::Date>();
}

/// Follows the references of an archive; throws a Failure.
class Decoder
{
public:
    explicit Decoder(const PropertyList& archive) : m_objects(archive[objectsKey].toArray())
    {
        if (m_objects.isEmpty() || !archive[topKey].contains(rootKey))
            fail(QStringLiteral("it has no objects or no root."));
        m_root = archive[topKey][rootKey];
    }

    Dictionary decode() const
    {
        const PropertyList& root = object(m_root);
        const QString name = className(root);
        if (name != u"NSDictionary" && name != u"NSMutableDictionary")
            fail(QStringLiteral("its root is no dictionary."));
        const Array keys = root[keysKey].toArray();
        const Array values = root[valuesKey].toArray();
        if (keys.size() != values.size())
            fail(QStringLiteral("it has %1 keys but %2 values.")
                     .arg(keys.size())
                     .arg(values.size()));
        Dictionary dictionary;
        for (qsizetype i = 0; i < keys.size(); ++i) {
            const auto key = leaf(keys[i]);
            const auto* text = key ? key->as<QString>() : nullptr;
            if (!text)
                fail(QStringLiteral("a key is not a text."));
            if (const auto value = leaf(values[i]))
                dictionary.insert(*text, *value);
        }
        return dictionary;
    }

private:
    [[noreturn]] static void fail(const QString& message)
    {
        throw Failure{QStringLiteral("The archive is damaged: ") + message};
    }

    const PropertyList& object(const PropertyList& reference) const
    {
        const auto* uid = reference.as<Uid>();
        if (!uid || qsizetype(uid->index) >= m_objects.size())
            fail(QStringLiteral("a reference leads to no object."));
        return m_objects[uid->index];
    }

    QString className(const PropertyList& record) const
    {
        if (!record.contains(classKey))
            fail(QStringLiteral("an object has no class."));
        return object(record[classKey])[classNameKey].toString();
    }

    /// Nothing for the null object, which has the index 0; a text that reads "$null" has another.
    std::optional<PropertyList> leaf(const PropertyList& reference) const
    {
        const PropertyList& value = object(reference);
        if (reference.as<Uid>()->index == 0)
            return std::nullopt;
        if (isInlineLeaf(value))
            return value;
        const QString name = className(value);
        if (name == u"NSString" || name == u"NSMutableString")
            return text(value);
        if (name == u"NSData" || name == u"NSMutableData")
            return data(value);
        fail(QStringLiteral("an object of the class “%1” where a text, a number or data should be.")
                 .arg(name.left(100)));
    }

    static PropertyList text(const PropertyList& record)
    {
        PropertyList content = record[QStringLiteral("NS.string")];
        if (content.as<QString>())
            return content;
        const PropertyList bytes = record[QStringLiteral("NS.bytes")];
        if (bytes.as<QByteArray>())
            return QString::fromUtf8(bytes.toData());
        fail(QStringLiteral("a text is missing."));
    }

    static PropertyList data(const PropertyList& record)
    {
        PropertyList content = record[QStringLiteral("NS.data")];
        if (content.as<QByteArray>())
            return content;
        fail(QStringLiteral("data are missing."));
    }

    Array m_objects;
    PropertyList m_root;
};

} // namespace

Result<QByteArray> encodeKeyedArchive(const Dictionary& dictionary)
{
    // The root is the object 1; the keys follow, then the values, then the root's class.
    Array keys;
    Array values;
    Array leaves;
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
        if (!isInlineLeaf(entry.value()))
            return Failure{
                QStringLiteral("The value of “%1” is no text, number or data.").arg(entry.key())};
        keys.append(Uid{quint32(2 + keys.size())});
        values.append(Uid{quint32(2 + dictionary.size() + values.size())});
        leaves.append(entry.value());
    }
    const QString dictionaryClass = QStringLiteral("NSDictionary");
    Array objects{nullObject, Dictionary{{keysKey, keys},
                                         {valuesKey, values},
                                         {classKey, Uid{quint32(2 + 2 * dictionary.size())}}}};
    for (auto key = dictionary.keyBegin(); key != dictionary.keyEnd(); ++key)
        objects.append(*key);
    objects += leaves;
    objects.append(Dictionary{{classNameKey, dictionaryClass},
                              {classesKey, Array{dictionaryClass, QStringLiteral("NSObject")}}});
    return writeBinaryPropertyList(Dictionary{{versionKey, 100000},
                                              {archiverKey, QStringLiteral("NSKeyedArchiver")},
                                              {topKey, Dictionary{{rootKey, Uid{1}}}},
                                              {objectsKey, objects}});
}

Result<Dictionary> decodeKeyedArchive(const QByteArray& bytes)
{
    try {
        const auto archive = readPropertyList(bytes);
        if (!archive)
            return archive.failure();
        return Decoder(archive->list).decode();
    } catch (const Failure& failure) {
        return failure;
    }
}

} // namespace quillory
