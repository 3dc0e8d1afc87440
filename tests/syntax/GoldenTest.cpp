#include "support/Folders.h"
#include "syntax/ColouringPreparation.h"
#include "syntax/DefinitionList.h"
#include "syntax/RoleLetters.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using test::letters;
using test::painted;

const QString sourceFolder = QStringLiteral(QUILLORY_SOURCE_DIR);
const QString goldenFolder = sourceFolder + QStringLiteral("/tests/syntax/golden");

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

const DefinitionList& shippedDefinitions()
{
    static const DefinitionList list = [] {
        DefinitionList all;
        const QString folder = sourceFolder + QStringLiteral("/resources/Definitions");
        all.load(folder, folder);
        return all;
    }();
    return list;
}

/// The shipped definition for \a path; null where there is none.
const Definition* definitionFor(const QString& path)
{
    const qsizetype index =
        shippedDefinitions().indexForExtension(QFileInfo(path).suffix().toLower());
    return index < 0 ? nullptr : &shippedDefinitions().arrangedObjects()[size_t(index)];
}

/// Each line of \a text, and under it a line of letters where anything is coloured.
QByteArray marked(const TextSnapshot& text, const Recolouring& result)
{
    const std::string all = letters(painted(result, text.range()));
    QByteArray markup =
        "Letters under a line: k keyword, o other, b object, c class, p other2, t type, "
        "e constant,\nf basic, m method, a completion word, C command, N number, I instruction, "
        "v variable,\nS string, A attribute, # comment.\n\n";
    for (LineIndex line; line.value() < text.lineCount(); ++line) {
        const TextRange range = text.lineContent(line);
        const QString content = text.string(range);
        markup += "  " + content.toUtf8() + '\n';
        std::string under = all.substr(size_t(range.location), size_t(range.length));
        under.erase(under.find_last_not_of('.') + 1);
        for (size_t i = under.size(); i-- > 0;) {
            if (under[i] == '.')
                under[i] = content[qsizetype(i)] == u'\t' ? '\t' : ' ';
            else if (content[qsizetype(i)].isLowSurrogate())
                under.erase(i, 1);
        }
        if (!under.empty())
            markup += "> " + QByteArray::fromStdString(under) + '\n';
    }
    return markup;
}

// QUILLORY_PROMOTE=1 (tools/promote-golden) takes what is coloured now for what shall be.
TEST(GoldenTest, ColoursSamplesAsPromoted)
{
    const QStringList samples = QDir(goldenFolder).entryList(QDir::Files, QDir::Name);
    int count = 0;
    for (const QString& name : samples) {
        if (name.endsWith(QStringLiteral(".colours")))
            continue;
        const QString path = goldenFolder + u'/' + name;
        const Definition* definition = definitionFor(path);
        ASSERT_TRUE(definition) << name.toStdString();
        ColouringState state;
        EXPECT_TRUE(prepareColoring(*definition, {}, state).empty()) << name.toStdString();
        const TextSnapshot text(QString::fromUtf8(contentOf(path)));
        const bool isPlain = definition->title() == Definition::plainText;
        const Recolouring result =
            isPlain ? Recolouring() : recoloured(text, text.range(), state, ColourRoles());
        const QByteArray now = marked(text, result);
        const QString expected = path + QStringLiteral(".colours");
        if (qEnvironmentVariableIsSet("QUILLORY_PROMOTE")) {
            QFile file(expected);
            ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(now) == now.size());
        }
        const QList<QByteArray> before = contentOf(expected).split('\n');
        const QList<QByteArray> after = now.split('\n');
        for (qsizetype i = 0; i < std::max(before.size(), after.size()); ++i) {
            ASSERT_EQ(before.value(i).toStdString(), after.value(i).toStdString())
                << name.toStdString() << ".colours, line " << i + 1
                << "; if the new colours are right: tools/promote-golden";
        }
        ++count;
    }
    EXPECT_GE(count, 10);
}

TEST(InstalledSourcesTest, AreColouredByPagesAsTheyAreWhole)
{
    int files = 0;
    for (const char* folder : {"/usr/include", "/usr/lib/python3", "/usr/share/perl"}) {
        QDirIterator sources(QString::fromLatin1(folder), QDir::Files,
                             QDirIterator::Subdirectories);
        for (int inFolder = 0; inFolder < 60 && sources.hasNext();) {
            const QString path = sources.next();
            const Definition* definition = definitionFor(path);
            if (!definition || sources.fileInfo().size() > 200000)
                continue;
            ColouringState state;
            prepareColoring(*definition, {}, state);
            const TextSnapshot text(QString::fromUtf8(contentOf(path)));
            const std::vector<TextOffset> starts = test::pageStarts(text, state);
            if (qsizetype(starts.size()) < text.lineCount())
                continue; // literals over lines
            const std::string whole = letters(
                painted(recoloured(text, text.range(), state, ColourRoles()), text.range()));
            for (size_t i = 0; i < starts.size(); i += 1 + starts.size() / 16) {
                const TextRange range{starts[i],
                                      std::min<TextOffset>(2000, text.length() - starts[i])};
                const Recolouring page = recoloured(text, range, state, ColourRoles());
                ASSERT_EQ(letters(painted(page, page.range)),
                          whole.substr(size_t(page.range.location), size_t(page.range.length)))
                    << path.toStdString() << " from " << starts[i];
            }
            ++inFolder;
            ++files;
        }
    }
    if (files == 0)
        GTEST_SKIP() << "no installed package brings sources";
}

} // namespace
} // namespace quillory
