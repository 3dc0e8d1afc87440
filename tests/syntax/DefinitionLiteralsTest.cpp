#include "support/Folders.h"
#include "syntax/ColouringPreparation.h"
#include "syntax/PropertyListFolder.h"
#include "syntax/StringLiterals.h"

#include <QDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;

ColouringState stateOf(const QString& name)
{
    const QString path =
        QStringLiteral(QUILLORY_SOURCE_DIR "/resources/Definitions/") + name + u".plist"_s;
    ColouringState state;
    prepareColoring(Definition(propertyListAt(path).dictionary, path), {}, state);
    return state;
}

/// The literals by both delimiters in \a text, apart by blanks, the second delimiter's first.
QString literals(const ColouringState& state, const QString& text)
{
    const QString after = u'\n' + text; // as if the text stood behind other lines
    const std::u16string_view units(reinterpret_cast<const char16_t*>(after.utf16()),
                                    size_t(after.size()));
    QStringList found;
    for (const auto& all : {secondStringLiterals(units, state), firstStringLiterals(units, state)})
        for (const StringLiteral& literal : all.found)
            found += after.sliced(literal.begin, literal.end - literal.begin);
    found.removeDuplicates();
    return found.join(u" ~ "_s);
}

TEST(DefinitionLiteralsTest, FindsWhatTheLanguageWrites)
{
    struct Row
    {
        const char* definition;
        QString text;
        QString expected;
    };
    const Row rows[] = {
        {"C", uR"(f('"', "a", '\'', L"b.", 1'000))"_s, uR"('"' ~ '\'' ~ "a" ~ L"b.")"_s},
        {"C", u"#include <a/b.h> // x<y>\nint a<b>c;"_s, u"<a/b.h>"_s},
        {"C", u"\"a\\\nb\" \"c\nd\""_s, u"\"a\\\nb\""_s},
        {"C++", uR"~(R"(a "b" c)" 0x1'0'f u8"d")~"_s, uR"~(R"(a "b" c)" ~ u8"d")~"_s},
        {"Python", uR"(f"{a}", rb'c\'d' "" "# e")"_s, uR"(rb'c\'d' ~ f"{a}" ~ "" ~ "# e")"_s},
        {"Shell", uR"(${#a} ${b##*/} c#d $'e\'f' 'g'\''h' "i"'j' # k)"_s,
         uR"(${#a} ~ ${b##*/} ~ #d ~ 'g'\''h' ~ 'j' ~ $'e\'f' ~ "i"'j')"_s},
        {"Markdown", u"## A `b`\nc `d` *e* f_g_h [i](j \"k\") 2 * 3 * 4\nL\n=\n"_s,
         u"*e* ~  A `b` ~ `d` ~ (j \"k\") ~ L"_s},
        {"JSON", uR"({"a": "b", "c":"d\"", "e" : 1})"_s, uR"("b" ~ "d\"" ~ "e")"_s},
        {"YAML", u"a b: c:d\n- e: 'f''g'\nh: {i: j, \"k\": l} # m: n\nhttp://o#p\n"_s,
         u"'f''g' ~ #p ~ a b ~ - e ~ h ~ i ~ \"k\""_s},
        {"SQL", uR"('it''s' E'a\'b' N'c\' "d""e" `f`)"_s,
         uR"("d""e" ~ `f` ~ 'it''s' ~ E'a\'b' ~ N'c\')"_s},
        {"Ruby", uR"(:a x ? :b : c, d: 1 A::B if /e#"/; 4 / 2 %w[f g] <<X#{h}X ?# i[:j])"_s,
         uR"(#{h} ~ ?# ~ :a ~ :b ~ d: ~ /e#"/ ~ %w[f g] ~ :j)"_s},
        {"Go", u"'`' \"`\" `a\nb` 'c' '\\n'"_s, u"'`' ~ 'c' ~ '\\n' ~ \"`\" ~ `a\nb`"_s},
        {"Rust", uR"(&'a b'"' r#"c "d""# br"e\" "f" '\u{1F}' <'g, 'h>)"_s,
         uR"(b'"' ~ '\u{1F}' ~ r#"c "d""# ~ br"e\" ~ "f")"_s},
        {"Makefile", u"a b: c\nd := e\nf:: 'g' \\#h # i\nif: j\n"_s, u"'g' ~ #h ~ a b ~ f"_s},
    };
    for (const Row& row : rows)
        EXPECT_EQ(literals(stateOf(QString::fromLatin1(row.definition)), row.text).toStdString(),
                  row.expected.toStdString())
            << row.definition;
}

// A search that runs into its limit finds nothing more, so the rest of the text would lose colours.
TEST(DefinitionLiteralsTest, TakesAFewStepsForEachCharacter)
{
    const QDir folder(QStringLiteral(QUILLORY_SOURCE_DIR "/resources/Definitions"));
    for (const QString& file : folder.entryList({u"*.plist"_s}, QDir::Files)) {
        const ColouringState state = stateOf(file.chopped(6));
        for (const char* piece : {"a",  "ab ", "\n",  "\"", "\\\"", "'",    "\\'",  "`",  "(`",
                                  "# ", "${#", "#{",  ":a", "{a",   "\na:", " **a", "*",  "](",
                                  "/[", "=/ ", "\"a", "r#", "<",    "b'a",  "%w[",  "=\n"}) {
            const QString text = QString::fromLatin1(piece).repeated(20000);
            const std::u16string_view units(reinterpret_cast<const char16_t*>(text.utf16()),
                                            size_t(text.size()));
            EXPECT_FALSE(firstStringLiterals(units, state).hitLimit)
                << file.toStdString() << ": " << piece;
            EXPECT_FALSE(secondStringLiterals(units, state).hitLimit)
                << file.toStdString() << ": " << piece;
        }
    }
}

} // namespace
} // namespace quillory
