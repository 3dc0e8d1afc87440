#include "foundation/PropertyList.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace quillory {
namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

TEST(PropertyList, ReadsAsTheKindThatIsExpected)
{
    struct Case
    {
        PropertyList list;
        bool boolean;
        qint64 integer;
        double real;
    };
    constexpr qint64 smallest = std::numeric_limits<qint64>::min();
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    const auto text = [](QStringView units) { return PropertyList(units.toString()); };
    const Case cases[] = {
        {{}, false, 0, 0},
        {true, true, 1, 1},
        {-7, true, -7, -7},
        {std::numeric_limits<quint64>::max(), true, largest, 18446744073709551615.0},
        {2.9, true, 2, 2.9},
        {-1e300, true, smallest, -1e300},
        {9223372036854775808.0, true, largest, 9223372036854775808.0},
        {text(u"YES"), true, 0, 0},
        {text(u" true"), true, 0, 0},
        {text(u"NO"), false, 0, 0},
        {text(u"0"), false, 0, 0},
        {text(u"off"), false, 0, 0},
        {text(u" 9007199254740993 apples"), true, 9007199254740993, 9007199254740993.0},
        {text(u"-2.5e1x"), true, -2, -25},
        {text(u"1e"), true, 1, 1},
        {text(u"."), false, 0, 0},
        {text(u"-"), false, 0, 0},
        {text(u"1e999"), true, 1, INFINITY},
        {text(u"99999999999999999999"), true, largest, 1e20},
        {Array{1}, false, 0, 0},
        {QByteArray("1"), false, 0, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(&each - cases);
        EXPECT_EQ(each.list.toBool(), each.boolean);
        EXPECT_EQ(each.list.toInteger(), each.integer);
        EXPECT_EQ(each.list.toReal(), each.real);
    }
    const PropertyList list = Dictionary{
        {QStringLiteral("texts"), Array{text(u"a"), 1, text(u"b")}}, {QStringLiteral("one"), 1}};
    EXPECT_EQ(list[QStringLiteral("texts")].toStringList(),
              QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(list[QStringLiteral("one")].toString(), QString());
    EXPECT_EQ(list[QStringLiteral("none")], PropertyList(false));
    EXPECT_FALSE(list.contains(QStringLiteral("none")));
    EXPECT_FALSE(PropertyList(1).contains(QStringLiteral("one")));
}

TEST(PropertyList, EqualityTellsKindsApart)
{
    const PropertyList values[] = {false,
                                   0,
                                   0.0,
                                   1,
                                   -1,
                                   std::numeric_limits<quint64>::max(),
                                   QString(),
                                   QByteArray(),
                                   PropertyList::Date{0},
                                   PropertyList::Date{1},
                                   PropertyList::Uid{0},
                                   PropertyList::Uid{1},
                                   Array(),
                                   Array{0},
                                   Array{0, 0},
                                   Array{0.0},
                                   Dictionary(),
                                   Dictionary{{QStringLiteral("a"), 0}},
                                   Dictionary{{QStringLiteral("b"), 0}},
                                   Dictionary{{QStringLiteral("a"), 1}},
                                   Array{PropertyList(Array())}};
    for (const PropertyList& a : values) {
        for (const PropertyList& b : values)
            EXPECT_EQ(a == b, &a == &b) << &a - values << " and " << &b - values;
    }
    EXPECT_EQ(PropertyList(5U), PropertyList(5));
    EXPECT_EQ(PropertyList(NAN), PropertyList(NAN));
}

} // namespace
} // namespace quillory
