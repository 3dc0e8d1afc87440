#include "support/Folders.h"
#include "syntax/ColouringPreparation.h"
#include "syntax/DefinitionList.h"
#include "syntax/PropertyListFolder.h"
#include "syntax/regex/ICUMatcher.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace quillory {

namespace {

using namespace Qt::StringLiterals;

constexpr auto roleLists = std::to_array<QLatin1StringView>({
    "keywords"_L1,
    "others"_L1,
    "objects"_L1,
    "classes"_L1,
    "others2"_L1,
    "types"_L1,
    "constants"_L1,
    "basics"_L1,
    "methods"_L1,
});

QString folder()
{
    return QStringLiteral(QUILLORY_SOURCE_DIR "/resources/Definitions");
}

DefinitionList shippedList()
{
    DefinitionList list;
    list.load(folder(), folder());
    return list;
}

/// One definition that comes with the program; the parameter is its file.
class DefinitionFilesTest : public ::testing::TestWithParam<std::string>
{
protected:
    const Definition& definition() const { return m_definition; }
    QString string(QLatin1StringView key) const { return definition().string(key).value_or(u""_s); }
    QStringList words(QLatin1StringView key) const
    {
        return definition().words(key).value_or(QStringList());
    }
    ColouringState state() const
    {
        ColouringState result;
        prepareColoring(definition(), {}, result);
        return result;
    }

private:
    static Definition read(const QString& path)
    {
        PropertyListFile file = propertyListAt(path);
        EXPECT_EQ(file.problem, QString()) << file.problem.toStdString();
        return {file.dictionary, path};
    }
    const Definition m_definition =
        read(QDir(folder()).filePath(QString::fromStdString(GetParam())));
};

std::vector<std::string> fileNames()
{
    const QStringList files = QDir(folder()).entryList({u"*.plist"_s}, QDir::Files);
    std::vector<std::string> names(size_t(files.size()));
    std::ranges::transform(files, names.begin(), &QString::toStdString);
    return names;
}

INSTANTIATE_TEST_SUITE_P(
    Shipped, DefinitionFilesTest, ::testing::ValuesIn(fileNames()), [](const auto& file) {
        return QString::fromStdString(file.param).chopped(6).replace(u'+', u"Plus"_s).toStdString();
    });

std::vector<std::string> descriptions(const std::vector<DefinitionFault>& faults)
{
    std::vector<std::string> result;
    result.reserve(faults.size());
    for (const DefinitionFault& fault : faults)
        result.push_back(fault.description().toStdString());
    return result;
}

TEST(ShippedDefinitionsTest, AreReadAndShareNoTitleAndNoExtension)
{
    const DefinitionList list = shippedList();
    EXPECT_EQ(descriptions(list.faults()), std::vector<std::string>{});
    EXPECT_EQ(list.arrangedObjects().size(), fileNames().size());
    QHash<QString, QString> titles;
    QHash<QString, QString> claims;
    for (const Definition& definition : list.arrangedObjects()) {
        EXPECT_FALSE(titles.contains(definition.title())) << definition.title().toStdString();
        titles.insert(definition.title(), definition.path());
        for (const QString& extension : definition.extensions()) {
            EXPECT_FALSE(claims.contains(extension))
                << extension.toStdString() << " is claimed by " << claims[extension].toStdString()
                << " and " << definition.title().toStdString();
            claims.insert(extension, definition.title());
        }
        EXPECT_EQ(definition.isDefault(), definition.title() == Definition::plainText);
    }
}

TEST_P(DefinitionFilesTest, HasNoFault)
{
    EXPECT_EQ(descriptions(definition().identityFaults()), std::vector<std::string>{});
    EXPECT_EQ(descriptions(definition().contentFaults()), std::vector<std::string>{});
    ColouringState state;
    EXPECT_EQ(descriptions(prepareColoring(definition(), {}, state)), std::vector<std::string>{});
    ColouringOptions multiLine;
    multiLine.colourMultiLineStrings = true;
    EXPECT_EQ(descriptions(prepareColoring(definition(), multiLine, state)),
              std::vector<std::string>{});
}

/// What a definition lacks stays as the definition before it had it.
TEST_P(DefinitionFilesTest, LeavesNothingToTheDefinitionBefore)
{
    for (const QLatin1StringView key : roleLists)
        EXPECT_TRUE(definition().words(key)) << key.data();
    EXPECT_TRUE(definition().words("autocompleteWords"_L1));
    EXPECT_TRUE(definition().string("beginVariable"_L1));
    EXPECT_TRUE(definition().flag("keywordsCaseSensitive"_L1));
    EXPECT_TRUE(definition().flag("shouldBeRecolered"_L1));
}

TEST_P(DefinitionFilesTest, TellsWhatItsDocumentsNeed)
{
    EXPECT_FALSE(string("functionMenuTitle"_L1).isEmpty());
    for (const QString& extension : definition().extensions())
        EXPECT_EQ(extension, extension.toLower());
    EXPECT_TRUE(definition().extensions().contains(string("mainExtension"_L1)));
    for (const QLatin1StringView key :
         {"canCloseTags"_L1, "canUsePreview"_L1, "canUsePDFPreview"_L1, "colorNumbers"_L1})
        EXPECT_TRUE(definition().flag(key)) << key.data();
    for (const char* pair :
         {"Command", "Instruction", "FirstMultiLineComment", "SecondMultiLineComment"}) {
        const QByteArray begin = QByteArray("begin") + pair;
        const QByteArray end = QByteArray("end") + pair;
        EXPECT_EQ(string(QLatin1StringView(begin)).isEmpty(),
                  string(QLatin1StringView(end)).isEmpty())
            << pair;
    }
}

/// A word is looked for from a character that begins words to one that ends them. The words that
/// are only for completion may hold anything: one that cannot be found in text is never coloured.
TEST_P(DefinitionFilesTest, ListsOnlyWordsThatCanBeFound)
{
    const ColouringState sets = state();
    for (const QLatin1StringView key : roleLists)
        for (const QString& word : words(key)) {
            ASSERT_FALSE(word.isEmpty()) << key.data();
            EXPECT_TRUE(sets.keywordStartCharacterSet.contains(word.front().unicode()))
                << key.data() << ": " << word.toStdString();
            for (const QChar unit : QStringView(word).sliced(1))
                EXPECT_FALSE(sets.keywordEndCharacterSet.contains(unit.unicode()))
                    << key.data() << ": " << word.toStdString();
        }
}

/// Of a word that two lists hold the later list would decide the colour.
TEST_P(DefinitionFilesTest, ListsEachWordOnceAndInOrder)
{
    const bool sensitive = definition().flag("keywordsCaseSensitive"_L1).value_or(true);
    QHash<QString, const char*> places;
    auto add = [&](QLatin1StringView key) {
        const QStringList list = words(key);
        EXPECT_TRUE(std::is_sorted(list.begin(), list.end())) << key.data();
        for (const QString& word : list) {
            const QString seen = key == "keywords"_L1 && !sensitive ? word.toLower() : word;
            EXPECT_FALSE(places.contains(seen))
                << word.toStdString() << " in " << key.data() << " and " << places.value(seen);
            places.insert(seen, key.data());
        }
    };
    for (const QLatin1StringView key : roleLists)
        add(key);
    add("autocompleteWords"_L1);
}

TEST_P(DefinitionFilesTest, HasCommandsThatCanRun)
{
    const PropertyList::Array items = definition().value("commandItems"_L1).toArray();
    ASSERT_FALSE(items.empty());
    QSet<QString> titles;
    QSet<QString> keys;
    qint64 before = 9; // a menu neither begins nor ends with a line, nor has two of them in a row
    for (const PropertyList& item : items) {
        const qint64 kind = item[u"kind"_s].toInteger();
        const QString title = item[u"title"_s].toString();
        const QString body = item[u"string"_s].toString();
        SCOPED_TRACE(title.toStdString());
        EXPECT_FALSE(kind == 9 && before == 9);
        before = kind;
        if (kind == 9)
            continue;
        EXPECT_FALSE(title.isEmpty() || titles.contains(title) || body.isEmpty());
        titles.insert(title);
        if (const QString key = item[u"keyString"_s].toString(); !key.isEmpty()) {
            const QString keyed = item[u"commandKeyAddition"_s].toString() + u'+' + key;
            EXPECT_FALSE(keys.contains(keyed));
            keys.insert(keyed);
        }
        switch (kind) {
        case 0:
            EXPECT_TRUE(body.contains(u"CLIPBOARD"_s));
            EXPECT_FALSE(item[u"stringWithout"_s].toString().isEmpty());
            [[fallthrough]];
        case 1: // both are formats that take the selection
            EXPECT_LE(body.count(QRegularExpression(u"(?<!%)(%%)*+%@"_s)), 1);
            EXPECT_FALSE(body.contains(QRegularExpression(u"(?<!%)(%%)*+%(?![@%])"_s)));
            break;
        case 2:
        case 3:
            break;
        case 4:
            EXPECT_TRUE(body.contains(u"TEXTORCODE"_s));
            [[fallthrough]];
        case 8:
            EXPECT_TRUE(body.startsWith(u"https://"_s));
            break;
        case 6:
        case 61: // started without a shell, so the program is named by its place
            EXPECT_TRUE(body.startsWith(u'/'));
            EXPECT_TRUE(body.contains(QRegularExpression(u"TEXTORCODEAS(FILE|SSTRING)"_s)));
            break;
        default:
            ADD_FAILURE() << "no command is of the kind " << kind;
        }
    }
    EXPECT_NE(before, 9);
}

/// The file of the samples that is in the language of \a definition.
QString sampleOf(const Definition& definition)
{
    const QDir samples(QStringLiteral(QUILLORY_SOURCE_DIR "/tests/syntax/golden"));
    for (const QString& name : samples.entryList(QDir::Files))
        if (name.startsWith(u"sample."_s, Qt::CaseInsensitive) &&
            definition.extensions().contains(name.section(u'.', 1)))
            return samples.filePath(name);
    return {};
}

QString contents(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

std::shared_ptr<ICUPattern> functionPattern(const QString& definition)
{
    return ICUPattern::patternWithString(definition, UREGEX_CASE_INSENSITIVE | UREGEX_MULTILINE);
}

/// Each function of \a text on a line: the number of its line and its name.
QString functions(const QString& pattern, const QString& ignored, const QString& text)
{
    QString result;
    if (pattern.isEmpty())
        return result;
    ICUMatcher matcher(functionPattern(pattern), text);
    while (matcher.findNext()) {
        const QString match = matcher.group();
        QString name = match.trimmed();
        while (name.endsWith(u'{') || name.endsWith(u' ') || name.endsWith(u'\t'))
            name.chop(1);
        if (!ignored.isEmpty())
            name.remove(ignored, Qt::CaseInsensitive);
        const qsizetype start = matcher.rangeOfMatch().location + match.indexOf(match.trimmed());
        const qsizetype line = QStringView(text).first(start).count(u'\n') + 1;
        result += QString::number(line) + u'\t' + name.replace(u'\n', u"\\n"_s) + u'\n';
    }
    return result;
}

/// The names were looked through one by one. To take over what is found now, after a change that is
/// meant, set QUILLORY_PROMOTE and look at the difference.
TEST_P(DefinitionFilesTest, FindsTheFunctionsOfItsSample)
{
    const QString sample = sampleOf(definition());
    ASSERT_FALSE(sample.isEmpty());
    const QString found = functions(string("functionDefinition"_L1),
                                    string("ignoreAsAFunctionComponent"_L1), contents(sample));
    QFile expected(QStringLiteral(QUILLORY_SOURCE_DIR "/tests/syntax/functions/") +
                   QFileInfo(sample).fileName() + u".tsv"_s);
    if (qEnvironmentVariableIsSet("QUILLORY_PROMOTE"))
        EXPECT_TRUE(expected.open(QFile::WriteOnly) && expected.write(found.toUtf8()) >= 0);
    else
        EXPECT_EQ(found.toStdString(), contents(expected.fileName()).toStdString());
}

/// The pattern runs over whole documents, which may be anything; limits end a search that takes
/// more than a small number of steps for each character.
TEST_P(DefinitionFilesTest, FindsFunctionsInAFewStepsForEachCharacter)
{
    const QString pattern = string("functionDefinition"_L1);
    if (pattern.isEmpty())
        return;
    QStringList texts{contents(sampleOf(definition())).repeated(10)};
    for (const auto piece : {"a",           " ",
                             "\t",          "\n",
                             "(",           "{",
                             "<",           "[",
                             "\"",          "#",
                             "/*",          "a ",
                             "a\n",         "a(",
                             "a = (",       "a = (\n",
                             "a(b, ",       "a (\n",
                             "<h1 ",        "<a id=",
                             "<h2>a<b>",    "\\section{",
                             "function a(", "- (a",
                             "- (a)b:(",    "static int a(b, ",
                             "public a<b<", "class a ",
                             "a, b ",       "a: ",
                             "@a ",         "\"a\": ",
                             "def a(",      "a::"})
        texts.append(QString::fromLatin1(piece).repeated(8000));
    for (const QString& text : texts) {
        SCOPED_TRACE(text.first(20).toStdString());
        ICUMatcher matcher(functionPattern(pattern), text);
        EXPECT_NO_THROW(while (matcher.findNext()){});
    }
}

} // namespace
} // namespace quillory
