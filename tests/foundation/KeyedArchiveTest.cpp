#include "foundation/KeyedArchive.h"
#include "Samples.h"
#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/PropertyListReader.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace quillory {
namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

const QString folder = QStringLiteral("archives");
const QString text = QStringLiteral("text");
const QString title = QStringLiteral("definitionTitle");

QByteArray archive(const char* name)
{
    return sample(folder, QLatin1String(name) + QStringLiteral(".edit"));
}

TEST(KeyedArchive, ReadsWhatOthersWrote)
{
    int count = 0;
    for (const QString& name : sampleNames(folder, QStringLiteral("*.json"))) {
        const QJsonObject verdict = sampleVerdict(folder, name);
        // Two of the samples were written there, the others made by hand and read there.
        const QJsonObject values =
            verdict.contains(text) ? verdict : verdict[QStringLiteral("gnustep")].toObject();
        if (values.contains(QStringLiteral("error")))
            continue;
        SCOPED_TRACE(qPrintable(name));
        const auto read = decodeKeyedArchive(archive(qPrintable(name.chopped(5))));
        ASSERT_TRUE(read) << qPrintable(read.failure().description());
        EXPECT_TRUE(matches(*read, values)) << ::testing::PrintToString(PropertyList(*read));
        ++count;
    }
    EXPECT_GE(count, 9);
}

TEST(KeyedArchive, RefusesDamage)
{
    for (const char* name :
         {"cycle", "dangling-uid-xml", "fewer-objects-than-keys", "no-class", "unknown-class"}) {
        SCOPED_TRACE(name);
        const auto read = decodeKeyedArchive(archive(name));
        ASSERT_FALSE(read);
        EXPECT_TRUE(read.failure().message.startsWith(u"The archive is damaged"));
    }
    EXPECT_FALSE(decodeKeyedArchive("{ a = b; }"));
    EXPECT_FALSE(decodeKeyedArchive(""));
}

TEST(KeyedArchive, TellsTheNullObjectFromItsName)
{
    const auto null = decodeKeyedArchive(archive("null-base"));
    ASSERT_TRUE(null);
    EXPECT_FALSE(null->contains(QStringLiteral("baseURL")));
    EXPECT_EQ(null->value(title).toString(), u"Text");

    const auto named = decodeKeyedArchive(archive("title-dollar-null"));
    ASSERT_TRUE(named);
    EXPECT_EQ(named->value(title).toString(), u"$null");
}

/// The archive of { text = VALUE; } with \a change made to its objects: 0 null, 1 the root, 2 the
/// key, 3 the value, 4 the root's class.
QByteArray changedArchive(const std::function<void(Array&)>& change)
{
    Dictionary list =
        readPropertyList(*encodeKeyedArchive({{text, QByteArray("abc")}}))->list.toDictionary();
    Array objects = list[QStringLiteral("$objects")].toArray();
    change(objects);
    list[QStringLiteral("$objects")] = objects;
    return *writeBinaryPropertyList(list);
}

Dictionary with(const PropertyList& list, const QString& key, const PropertyList& value)
{
    Dictionary dictionary = list.toDictionary();
    dictionary.insert(key, value);
    return dictionary;
}

TEST(KeyedArchive, AcceptsTheKnownRecordsAlone)
{
    struct Case
    {
        const char* className;
        const char* key;
        PropertyList content;
        std::optional<PropertyList> expected;
    };
    const PropertyList bytes(QByteArray("caf\xC3\xA9"));
    const PropertyList cafe(QStringLiteral("café"));
    const Case cases[] = {
        {"NSData", "NS.data", bytes, bytes},       {"NSMutableData", "NS.data", bytes, bytes},
        {"NSString", "NS.string", cafe, cafe},     {"NSMutableString", "NS.string", cafe, cafe},
        {"NSString", "NS.bytes", bytes, cafe},     {"NSString", "NS.data", bytes, std::nullopt},
        {"NSData", "NS.data", cafe, std::nullopt}, {"NSArray", "NS.objects", Array(), std::nullopt},
        {"NSDate", "NS.time", 1.5, std::nullopt},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.className) + " " + each.key);
        const auto read = decodeKeyedArchive(changedArchive([&each](Array& objects) {
            objects[3] = Dictionary{{QStringLiteral("$class"), PropertyList::Uid{5}},
                                    {QLatin1String(each.key), each.content}};
            objects.append(
                Dictionary{{QStringLiteral("$classname"), QString(QLatin1String(each.className))}});
        }));
        ASSERT_EQ(bool(read), each.expected.has_value());
        if (read) {
            EXPECT_EQ(read->value(text), *each.expected);
        }
    }
}

TEST(KeyedArchive, RefusesAnOddRoot)
{
    const QString classKey = QStringLiteral("$class");
    EXPECT_TRUE(decodeKeyedArchive(changedArchive([](Array&) {})));
    EXPECT_FALSE(decodeKeyedArchive(changedArchive([&](Array& objects) {
        objects[4] = Dictionary{{QStringLiteral("$classname"), QStringLiteral("NSArray")}};
    })));
    EXPECT_FALSE(decodeKeyedArchive(changedArchive(
        [&](Array& objects) { objects[1] = with(objects[1], classKey, PropertyList::Uid{9}); })));
    EXPECT_FALSE(decodeKeyedArchive(changedArchive([&](Array& objects) { objects[2] = 7; })));
    EXPECT_FALSE(decodeKeyedArchive(changedArchive([&](Array& objects) {
        objects[1] = with(objects[1], QStringLiteral("NS.keys"), Array{PropertyList::Uid{0}});
    })));
}

TEST(KeyedArchive, WritesWhatItReads)
{
    const Dictionary dictionary{
        {text, QByteArray("a\0b", 3)},          {QStringLiteral("encoding"), 0x94000100U},
        {QStringLiteral("lbFormat"), 3},        {title, QStringLiteral("$null")},
        {QStringLiteral("baseURL"), QString()}, {QStringLiteral("real"), 2.5},
        {QStringLiteral("yes"), true},
    };
    const auto bytes = encodeKeyedArchive(dictionary);
    ASSERT_TRUE(bytes);
    const auto read = decodeKeyedArchive(*bytes);
    ASSERT_TRUE(read) << qPrintable(read.failure().message);
    EXPECT_EQ(PropertyList(*read), PropertyList(dictionary));

    EXPECT_FALSE(encodeKeyedArchive({{text, Array()}}));
    EXPECT_TRUE(decodeKeyedArchive(*encodeKeyedArchive({}))->isEmpty());
}

TEST(KeyedArchive, LaysItsObjectsOutAsOthersDo)
{
    const auto bytes = encodeKeyedArchive({{text, QByteArray("abc")}});
    const auto plain = readPropertyList(*bytes);
    ASSERT_TRUE(plain);
    const auto theirs = readPropertyList(archive("plain"));
    ASSERT_TRUE(theirs);
    for (const char* name : {"$version", "$archiver", "$top"}) {
        const QString key = QLatin1String(name);
        EXPECT_EQ(plain->list[key], theirs->list[key]) << name;
    }
    const Array objects = plain->list[QStringLiteral("$objects")].toArray();
    const Array others = theirs->list[QStringLiteral("$objects")].toArray();
    EXPECT_EQ(objects.first(), others.first());
    EXPECT_EQ(objects.last(), others.last());
    EXPECT_EQ(objects[1].toDictionary().keys(), others[1].toDictionary().keys());
}

} // namespace
} // namespace quillory
