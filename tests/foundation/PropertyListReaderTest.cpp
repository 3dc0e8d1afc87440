#include "foundation/PropertyListReader.h"
#include "RandomPropertyList.h"
#include "Samples.h"
#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/XmlPropertyListWriter.h"

#include <gtest/gtest.h>
#include <optional>

namespace quillory {
namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

struct Case
{
    QByteArray bytes;
    std::optional<PropertyList> expected; ///< nothing where the list is refused
};

void expectAll(const std::vector<Case>& cases)
{
    for (const Case& each : cases) {
        SCOPED_TRACE(each.bytes.constData());
        const auto read = readPropertyList(each.bytes);
        ASSERT_EQ(bool(read), each.expected.has_value())
            << (read ? "" : qPrintable(read.failure().description()));
        if (read) {
            EXPECT_EQ(read->list, *each.expected) << ::testing::PrintToString(read->list);
        } else {
            EXPECT_FALSE(read.failure().message.isEmpty());
        }
    }
}

TEST(XmlPropertyListReader, SpellingsOfScalars)
{
    expectAll({
        {"<integer>-9223372036854775808</integer>", std::numeric_limits<qint64>::min()},
        {"<integer>-9223372036854775809</integer>", {}},
        {"<integer>18446744073709551615</integer>", std::numeric_limits<quint64>::max()},
        {"<integer>18446744073709551616</integer>", {}},
        {"<integer>0xFFFFFFFFFFFFFFFF</integer>", std::numeric_limits<quint64>::max()},
        {"<integer>0x10000000000000000</integer>", {}},
        {"<integer>-0</integer>", 0},
        {"<integer> 5</integer>", {}},
        {"<integer>5 </integer>", {}},
        {"<integer>--5</integer>", {}},
        {"<integer>0x</integer>", {}},
        {"<integer>12x</integer>", {}},
        {"<integer>1<!-- a comment -->2</integer>", 12},
        {"<integer>\xD9\xA3</integer>", {}}, // an Arabic digit
        {"<real>1e400</real>", {}},
        {"<real>.5</real>", 0.5},
        {"<real>-Inf</real>", -std::numeric_limits<double>::infinity()},
        {"<real>+infinity</real>", std::numeric_limits<double>::infinity()},
        {"<real>0x10</real>", {}},
        {"<real></real>", {}},
        {"<real>1,5</real>", {}},
        {"<date>2001-01-01T00:00:00Z</date>", PropertyList::Date{0}},
        {"<date>2000-02-29T23:59:59Z</date>", PropertyList::Date{-306 * 86400.0 - 86400 + 86399}},
        {"<date>1900-02-29T00:00:00Z</date>", {}},
        {"<date>2001-13-01T00:00:00Z</date>", {}},
        {"<date>2001-01-01T24:00:00Z</date>", {}},
        {"<date>2001-01-01T00:00:00</date>", {}},
        {"<date>2001-01-01 00:00:00Z</date>", {}},
        {"<date>yesterday</date>", {}},
        {"<data>YW Jj\n\tZA=!=</data>", QByteArray("abcd")},
        {"<true/>", true},
        {"<true>no</true>", {}},
    });
}

TEST(XmlPropertyListReader, Structure)
{
    const Dictionary uid{{QStringLiteral("CF$UID"), 1}};
    expectAll({
        {"", {}},
        {"<plist/>", {}},
        {"<plist><string>a</string></plist>anything <goes", QStringLiteral("a")},
        {"<plist><array/> text</plist>", {}},
        {"<array>text</array>", {}},
        {"<array><x/></array>", {}},
        {"<x:array xmlns:x='y'/>", {}},
        {"<array><string>a</array>", {}},
        {"<dict><string>a</string></dict>", {}},
        {"<dict><key>a</key><key>b</key></dict>", {}},
        {"<dict><key>a<b/></key><true/></dict>", {}},
        {"<!-- a --><?b?> <dict><!-- c --></dict>", Dictionary()},
        {"<dict><key>CF$UID</key><integer>4294967295</integer></dict>",
         PropertyList::Uid{4294967295}},
        {"<dict><key>CF$UID</key><integer>4294967296</integer></dict>",
         Dictionary{{QStringLiteral("CF$UID"), 4294967296}}},
        {"<dict><key>CF$UID</key><string>1</string></dict>",
         Dictionary{{QStringLiteral("CF$UID"), QStringLiteral("1")}}},
        {"<string>&#xD;&#10;</string>", QStringLiteral("\r\n")},
        {"<string>&#7;</string>", {}},
        {"<string>a\abell</string>", {}},
        {QByteArray("<string>a\0b</string>", 20), {}},
        {"<string>\xED\xA0\xBD</string>", {}}, // a surrogate in UTF-8
    });
}

TEST(XmlPropertyListReader, Encodings)
{
    const PropertyList cafe(QStringLiteral("café"));
    const QString text =
        QStringLiteral("<?xml version='1.0' encoding='utf-16'?><string>café</string>");
    const auto units = QByteArrayView(reinterpret_cast<const char*>(text.utf16()), 2 * text.size());
    expectAll({
        {"<?xml version='1.0' encoding='ISO-8859-1'?><string>caf\xE9</string>", cafe},
        {"<?xml version='1.0' encoding=\"macintosh\"?><string>caf\x8E</string>", cafe},
        {"<?xml version='1.0' encoding='ascii'?><string>caf\xE9</string>", {}},
        {"<?xml version='1.0' encoding='martian'?><string>caf\xE9</string>", {}},
        {"<?xml version='1.0' encoding='utf-16'?><string/>", {}}, // but stored in ASCII
        {"\xEF\xBB\xBF<string>caf\xC3\xA9</string>", cafe},
        {"\xFF\xFE" + units, cafe},
        {units.toByteArray(), cafe},
    });
}

TEST(XmlPropertyListReader, EntitiesAreRefusedBeforeTheyExpand)
{
    // Nine levels of parameter entities, which the parser would expand while it reads the type.
    QByteArray bomb = "<!DOCTYPE plist [<!ENTITY % a0 '<!-- x -->'>";
    for (int i = 1; i < 10; ++i) {
        const QByteArray reference = "&#37;a" + QByteArray::number(i - 1) + ";";
        bomb += "<!ENTITY % a" + QByteArray::number(i) + " '" + reference.repeated(10) + "'>";
    }
    expectAll({
        {bomb + "%a9;]><plist><true/></plist>", {}},
        {"<!-- <!DOCTYPE x> --> <?x ]> ?> <!DOCTYPE plist ']>' [ ]> <!ENTITY b 'c'> ]><true/>", {}},
        {"<!DOCTYPE plist SYSTEM 'a['><string><![CDATA[<!ENTITY]]></string>",
         QStringLiteral("<!ENTITY")},
        {"<!DOCTYPE plist SYSTEM 'file:///etc/hostname'><string>&a;</string>", {}},
    });
    const auto read = readPropertyList("<!DOCTYPE a [\n  <!ENTITY b 'c'>]><true/>");
    ASSERT_FALSE(read);
    EXPECT_EQ(read.failure().line, 2);
    EXPECT_EQ(read.failure().column, 3);
}

TEST(OpenStepPropertyListReader, Grammar)
{
    const auto text = [](const char* utf8) { return PropertyList(QString::fromUtf8(utf8)); };
    expectAll({
        {" \n\t", Dictionary()},
        {"{}", Dictionary()},
        {"()", Array()},
        {"(a,)", Array{text("a")}},
        {"(,)", {}},
        {"(a;b)", {}},
        {"(a", {}},
        {"{ a = 1; } b", {}},
        {"{ a = 1; a = 2; }", Dictionary{{QStringLiteral("a"), text("2")}}},
        {"{ a = ; }", {}},
        {"{ = b; }", {}},
        {"a = 1; b = (c); // end",
         Dictionary{{QStringLiteral("a"), text("1")}, {QStringLiteral("b"), Array{text("c")}}}},
        {"a = 1; b = 2", {}},
        {"<0fBD 77>", QByteArray("\x0f\xbd\x77")},
        {"<0f b>", {}},
        {"<0 f>", {}},
        {"<0f", {}},
        {"'it \\'is\\''", text("it 'is'")},
        {"\"two\nlines\\\nmore\"", text("two\nlines\nmore")},
        {"\"open", {}},
        {"\"open\\", {}},
        {"(/usr/bin/a-b_$:c, a//b\n)", Array{text("/usr/bin/a-b_$:c"), text("a//b")}},
        {"(a /* b, // c */, d) /* open", Array{text("a"), text("d")}},
        {"\xE2\x80\xA8(a\xE2\x80\xA9)", Array{text("a")}},
        {"(\"\\200\\351\\0601\\60x\", \"\\U00e9\\UD83D\\UDE00\\U41g\\Ux\\u41\")",
         Array{text("\u00A0\u00D801"
                    "0x"),
               text("é\U0001F600AgUxu41")}},
        {"\"\\376\"", {}}, // no character of that encoding
        {"<*I42>", {}},
        {"<[YWJj]>", {}},
    });
}

TEST(PropertyListReader, FailuresTellWhere)
{
    const struct
    {
        const char* bytes;
        qsizetype line;
        qsizetype column;
    } cases[] = {
        {"{ a = 1;\r\n  b = 2 }", 2, 9},
        {"( a,\r\n\n\"é\" +)", 3, 5},
        {"(a, \"open)", 1, 5},
        {"<plist>\n<array>\n  <integer>x</integer>\n</array></plist>", 3, 22},
        {"<plist>\n<string>a\x01</string></plist>", 2, 10},
        {"<plist>\n<string>&nbsp;</string></plist>", 2, 14},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.bytes);
        const auto read = readPropertyList(each.bytes);
        ASSERT_FALSE(read);
        EXPECT_EQ(read.failure().line, each.line) << qPrintable(read.failure().description());
        EXPECT_EQ(read.failure().column, each.column) << qPrintable(read.failure().description());
    }
    const auto missing = readPropertyListFile(QStringLiteral("no such file.plist"));
    ASSERT_FALSE(missing);
    EXPECT_TRUE(missing.failure().message.startsWith(u"no such file.plist: "));
}

/// A list in binary form, with objects and offsets of one byte.
QByteArray binary(const QList<QByteArray>& objects, const QByteArray& offsets = {})
{
    QByteArray bytes = "bplist00";
    QByteArray table;
    for (const QByteArray& object : objects) {
        table += char(bytes.size());
        bytes += object;
    }
    const char tableOffset = char(bytes.size());
    table = offsets.isEmpty() ? table : offsets;
    return bytes + table + QByteArray(6, 0) + '\1' + '\1' + QByteArray(7, 0) + char(table.size()) +
           QByteArray(15, 0) + tableOffset;
}

TEST(BinaryPropertyListReader, Objects)
{
    const QByteArray ones(8, '\xFF');
    const QByteArray zeros(8, '\0');
    expectAll({
        {binary({"\x14" + zeros + ones}), std::numeric_limits<quint64>::max()},
        {binary({"\x14" + ones + ones}), -1},
        {binary({"\x14" + zeros + zeros.chopped(1) + '\5'}), 5},
        {binary({"\x14" + ones + zeros}), {}}, // -2^64
        {binary({"\x14\x01" + ones + ones.chopped(1)}), {}},
        {binary({"\x15" + QByteArray(32, '\0')}), {}},
        {binary({"\x10\xFF"}), 255},
        {binary({"\x13" + ones}), -1},
        {binary({QByteArray(1, '\0')}), {}}, // null
        {binary({"\x0F"}), {}},
        {binary({"\x52"
                 "a\xE9"}),
         {}},
        {binary({"\x80\x07"}), PropertyList::Uid{7}},
        {binary({"\x84\x01" + QByteArray(4, '\0')}), {}},
        {binary({"\xA2\x01\x01", "\x09"}), Array{true, true}},
        {binary({QByteArray("\xA1\x00", 2)}), {}},             // holds itself
        {binary({"\xA1\x01", QByteArray("\xA1\x00", 2)}), {}}, // in a round
        {binary({QByteArray("\xD1\x01\x00", 3), "\x51"
                                                "a"}),
         {}}, // as a value
        {binary({"\xD2\x01\x02\x03\x04",
                 "\x51"
                 "a",
                 "\x51"
                 "a",
                 "\x08", "\x09"}),
         Dictionary{{QStringLiteral("a"), true}}},
        {binary({"\xAF\x10\x02\x01\x01", "\x09"}), Array{true, true}}, // a length of its own
        {binary({"\xAF\x51\x02\x01\x01", "\x09"}), {}},
        {binary({"\x4F\x13" + ones}), {}},
        // Three texts that overlap: each would be paid for by the same bytes.
        {binary({"\xA3\x01\x02\x03", "\x55\x54\x53\x52\x51"
                                     "a"},
                "\x08\x0C\x0D\x0E"),
         {}},
        {binary({"\x09"}, "\x07"), {}},
        {binary({"\x09"}, "\x09"), {}},
    });
}

TEST(BinaryPropertyListReader, DepthCountsThroughSharedObjects)
{
    // A chain of 400 arrays, reached first from the root and then from below 200 more.
    Array chain;
    PropertyList shared = Array();
    for (int i = 1; i < 400; ++i)
        shared = Array{shared};
    PropertyList below = shared;
    for (int i = 0; i < 111; ++i)
        below = Array{below};
    EXPECT_TRUE(readPropertyList(*writeBinaryPropertyList(Array{shared, below})));

    // The writer refuses more, so the same is made by hand: 256 arrays, the root's second element
    // being the last of another 257.
    QByteArray bytes = "bplist00";
    QByteArray table;
    constexpr int count = 600;
    for (int i = 0; i < count; ++i) {
        const int next = i == count - 1 ? -1 : i + 1;
        table += char(bytes.size() >> 8);
        table += char(bytes.size());
        if (next < 0)
            bytes += '\xA0';
        else if (i == 0) // the middle first, then the way that leads through all
            bytes += QByteArray("\xA2\x01\x2C\x00\x01", 5);
        else
            bytes += '\xA1' + QByteArray(1, char(next >> 8)) + char(next);
    }
    const qsizetype tableOffset = bytes.size();
    bytes += table + QByteArray(6, 0) + '\2' + '\2' + QByteArray(6, 0) + char(count >> 8) +
             char(count & 0xFF) + QByteArray(14, 0) + char(tableOffset >> 8) + char(tableOffset);
    const auto read = readPropertyList(bytes);
    ASSERT_FALSE(read);
    EXPECT_TRUE(read.failure().message.contains(u"512")) << qPrintable(read.failure().message);
}

TEST(PropertyListReader, TruncationsAreRefused)
{
    for (const char* name : {"containers.bin", "dates.bin", "deep-400.bin", "references.xml"}) {
        const QByteArray whole = sample(QStringLiteral("plist"), QLatin1String(name));
        const qsizetype end = whole.lastIndexOf("</plist>");
        // From 7 bytes on it is plain that the list is not a text without quotes.
        for (qsizetype size = 7; size < (end < 0 ? whole.size() : end); ++size) {
            // A binary list cut short has no trailer; what is left of a list in XML is not closed.
            ASSERT_FALSE(readPropertyList(whole.first(size))) << name << " cut to " << size;
        }
    }
}

TEST(PropertyListReader, MutationsNeverCrashAndWhatIsReadIsWritten)
{
    RandomPropertyList random(3);
    const QString folders[] = {QStringLiteral("plist"), QStringLiteral("openstep"),
                               QStringLiteral("archives")};
    int accepted = 0;
    for (const QString& folder : folders) {
        for (const QString& name : sampleNames(folder, QStringLiteral("*"))) {
            const QByteArray original = sample(folder, name);
            if (name.endsWith(u".json") || original.isEmpty() || original.size() > 3000)
                continue;
            for (int i = 0; i < 40; ++i) {
                QByteArray mutated = original;
                for (int changes = 1 + random.below(3); changes > 0; --changes)
                    mutated[random.below(int(mutated.size()))] = char(random.below(256));
                const auto read = readPropertyList(mutated);
                if (!read)
                    continue;
                ++accepted;
                const auto binary = writeBinaryPropertyList(read->list);
                ASSERT_TRUE(binary);
                ASSERT_EQ(readPropertyList(*binary)->list, read->list);
                const auto xml = writeXmlPropertyList(read->list);
                ASSERT_TRUE(!xml || readPropertyList(*xml)) << xml->constData();
            }
        }
    }
    EXPECT_GT(accepted, 100);
}

} // namespace
} // namespace quillory
