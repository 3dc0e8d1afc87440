#include "RandomPropertyList.h"
#include "Samples.h"
#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/PropertyListReader.h"
#include "foundation/XmlPropertyListWriter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace quillory {
namespace {

using Array = PropertyList::Array;

PropertyList rereadList(const QByteArray& bytes)
{
    const auto read = readPropertyList(bytes);
    EXPECT_TRUE(read) << qPrintable(read.failure().description());
    return read ? read->list : PropertyList(QStringLiteral("not read"));
}

TEST(PropertyListRoundTrip, XmlGivesBackWhatWasWritten)
{
    RandomPropertyList random(1);
    for (int i = 0; i < 500; ++i) {
        const PropertyList list = random.forXml();
        const auto xml = writeXmlPropertyList(list);
        ASSERT_TRUE(xml) << qPrintable(xml.failure().message);
        const auto read = readPropertyList(*xml);
        ASSERT_TRUE(read) << qPrintable(read.failure().description()) << xml->constData();
        ASSERT_EQ(read->form, PropertyListForm::xml);
        ASSERT_EQ(read->list, list);
    }
}

TEST(PropertyListRoundTrip, BinaryGivesBackWhatWasWritten)
{
    RandomPropertyList random(2);
    for (int i = 0; i < 500; ++i) {
        const PropertyList list = random.forBinary();
        const auto bytes = writeBinaryPropertyList(list);
        ASSERT_TRUE(bytes);
        const auto read = readPropertyList(*bytes);
        ASSERT_TRUE(read) << qPrintable(read.failure().description());
        ASSERT_EQ(read->form, PropertyListForm::binary);
        ASSERT_EQ(read->list, list);
    }
}

TEST(PropertyListRoundTrip, NumbersKeepTheirRangeAndKind)
{
    const auto smallest = std::numeric_limits<qint64>::min();
    const auto largest = std::numeric_limits<quint64>::max();
    const Array list{-1,
                     largest,
                     smallest,
                     quint64(1) << 63,
                     0x7FFFFFFFFFFFFFFF,
                     0,
                     0xFFFFFFFFU,
                     65536,
                     -128,
                     1.0,
                     0.1,
                     5e-324,
                     1.7976931348623157e308,
                     INFINITY,
                     -INFINITY,
                     NAN};
    ASSERT_NE(list[0], list[1]);
    ASSERT_NE(PropertyList(1), PropertyList(1.0));
    EXPECT_EQ(rereadList(*writeXmlPropertyList(list)), PropertyList(list));
    EXPECT_EQ(rereadList(*writeBinaryPropertyList(list)), PropertyList(list));
}

TEST(PropertyListRoundTrip, LongContainersOfManyObjects)
{
    Array array; // more objects than references of two bytes can tell apart
    for (int i = 0; i < 70'000; ++i)
        array.append(i);
    EXPECT_EQ(rereadList(*writeBinaryPropertyList(array)), PropertyList(array));
}

TEST(PropertyListRoundTrip, SharedValuesStaySmall)
{
    const QByteArray bytes = sample(QStringLiteral("plist"), QStringLiteral("doubling-28.bin"));
    const auto read = readPropertyList(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->list.depth(), 28);
    const auto again = writeBinaryPropertyList(read->list);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->size(), bytes.size());
    EXPECT_EQ(rereadList(*again), read->list); // 2^28 leaves, compared at once

    const auto xml = writeXmlPropertyList(read->list);
    ASSERT_FALSE(xml);
    EXPECT_TRUE(xml.failure().message.contains(u"16 MB")) << qPrintable(xml.failure().message);
}

PropertyList nestedArrays(int depth)
{
    Array innermost;
    PropertyList list = innermost;
    for (int i = 1; i < depth; ++i)
        list = Array{list};
    return list;
}

TEST(PropertyListRoundTrip, DepthIsLimitedInEveryForm)
{
    const PropertyList deepest = nestedArrays(512);
    const PropertyList deeper = nestedArrays(513);
    EXPECT_EQ(rereadList(*writeXmlPropertyList(deepest)), deepest);
    EXPECT_EQ(rereadList(*writeBinaryPropertyList(deepest)), deepest);
    EXPECT_FALSE(writeXmlPropertyList(deeper));
    EXPECT_FALSE(writeBinaryPropertyList(deeper));

    // In XML a reference is one level more.
    PropertyList reference = PropertyList::Uid{1};
    for (int i = 0; i < 511; ++i)
        reference = Array{reference};
    EXPECT_EQ(rereadList(*writeXmlPropertyList(reference)), reference);
    EXPECT_FALSE(writeXmlPropertyList(Array{reference}));

    const auto nested = [](const char* open, const char* close, int depth) -> QByteArray {
        return QByteArray(open).repeated(depth) + QByteArray(close).repeated(depth);
    };
    for (const int depth : {512, 513, 100'000}) {
        EXPECT_EQ(bool(readPropertyList(nested("<array>", "</array>", depth))), depth == 512);
        EXPECT_EQ(bool(readPropertyList(nested("(", ")", depth))), depth == 512);
        EXPECT_EQ(bool(readPropertyList("x=" + nested("{x=", ";}", depth - 1) + ";")), false);
    }
}

TEST(PropertyListRoundTrip, XmlRefusesWhatItCannotHold)
{
    const struct
    {
        PropertyList list;
        const char16_t* inMessage;
    } cases[] = {
        {QStringLiteral("bell\a"), u"U+0007"},
        {QString(QChar(u'\0')), u"U+0000"},
        {QString(QChar(0xD83D)), u"U+D83D"},
        {QString(QChar(0xFFFF)), u"U+FFFF"},
        {PropertyList::Dictionary{{QStringLiteral("a\vb"), 1}}, u"U+000B"},
        {PropertyList::Date{1e12}, u"date"},
        {PropertyList::Date{-1e11}, u"date"},
        {PropertyList::Date{NAN}, u"date"},
    };
    for (const auto& each : cases) {
        const auto xml = writeXmlPropertyList(each.list);
        ASSERT_FALSE(xml);
        EXPECT_TRUE(xml.failure().message.contains(QStringView(each.inMessage)))
            << qPrintable(xml.failure().message);
    }
}

TEST(PropertyListRoundTrip, XmlBreaksDataIntoLines)
{
    // 76 columns with tabs of 8, but never fewer than 12 characters.
    PropertyList list(QByteArray(100, 'x'));
    for (const auto& [depth, longest] :
         {std::pair(0, 76), std::pair(1, 68), std::pair(8, 12), std::pair(9, 12)}) {
        PropertyList nested = list;
        for (int i = 0; i < depth; ++i)
            nested = Array{nested};
        const QByteArray xml = *writeXmlPropertyList(nested);
        qsizetype columns = 0;
        for (const QByteArray& line : xml.split('\n')) {
            if (line.trimmed().startsWith("eHh4"))
                columns = std::max(columns, line.trimmed().size());
        }
        EXPECT_EQ(columns, longest) << depth;
        EXPECT_EQ(rereadList(xml), nested);
    }
}

} // namespace
} // namespace quillory
