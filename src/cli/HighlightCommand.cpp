#include "cli/CommandArguments.h"
#include "cli/HighlightOutput.h"
#include "cli/InstalledDefinitions.h"
#include "foundation/UserDefaults.h"
#include "syntax/ColouringPreparation.h"
#include "syntax/RecolouringEngine.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace quillory {

namespace {

constexpr QLatin1StringView commandName("highlight");

class Highlight
{
public:
    Highlight(const QStringList& arguments, const CliStreams& streams)
        : m_streams(streams), m_folders(installedFolders())
    {
        for (const char* option : {"definition", "theme", "range", "default", "format"})
            m_parser.addOption({QString::fromLatin1(option), QString(), QStringLiteral("value")});
        if (!m_parser.parse(QStringList(commandName) + arguments))
            throw Refusal{ExitStatus::Usage, m_parser.errorText()};
        if (m_parser.positionalArguments().size() != 1)
            throw Refusal{ExitStatus::Usage, QStringLiteral("name one file")};
    }

    void run()
    {
        const QString format = m_parser.isSet(QStringLiteral("format"))
                                   ? m_parser.value(QStringLiteral("format"))
                                   : QStringLiteral("ansi");
        if (format != QLatin1StringView("ansi") && format != QLatin1StringView("html") &&
            format != QLatin1StringView("json"))
            throw Refusal{ExitStatus::Usage,
                          QStringLiteral("--format takes “ansi”, “html” or “json”")};
        const QString path = m_parser.positionalArguments().constFirst();
        const ColouringOptions colouringOptions = options();
        const QString definition = QStringLiteral("definition");
        const Definition chosen = definitionFor(
            m_folders,
            m_parser.isSet(definition) ? std::optional(m_parser.value(definition)) : std::nullopt,
            path);
        ColouredText coloured;
        // Without a theme the roles in JSON are what they are, whatever they look like.
        if (format != QLatin1StringView("json") || m_parser.isSet(QStringLiteral("theme"))) {
            const Theme colours = theme();
            coloured.roles = colours.roles();
            coloured.plain = colours.plainColours();
        }
        coloured.text = textOfFile(path);
        TextRange lines = coloured.text.lineRangeForRange(range(coloured.text));
        if (chosen.title() != Definition::plainText) {
            ColouringState state;
            for (const DefinitionFault& fault : prepareColoring(chosen, colouringOptions, state))
                warn(fault.description());
            Recolouring result = recoloured(coloured.text, lines, state, coloured.roles);
            if (!result.limitedKey.isEmpty())
                warn(QStringLiteral("Definition “%1”, key “%2”: the pattern took too long; its "
                                    "text stays uncoloured.")
                         .arg(chosen.title(), result.limitedKey));
            coloured.runs = std::move(result.runs);
        }
        if (format == QLatin1StringView("json"))
            writeJson(m_streams.out, coloured.runs);
        else if (format == QLatin1StringView("ansi"))
            writeAnsi(m_streams.out, coloured, lines);
        else
            writeHtmlPage(m_streams.out, cut(std::move(coloured), lines),
                          QFileInfo(path).fileName());
    }

private:
    void warn(const QString& message) const
    {
        m_streams.error << "quillory-cli " << commandName << ": " << message << '\n';
    }

    ColouringOptions options() const
    {
        const UserDefaults defaults(m_folders.defaultsFile());
        ColouringOptions options = ColouringOptions::from(defaults);
        for (const QString& setting : m_parser.values(QStringLiteral("default"))) {
            const QString key = setting.section(u'=', 0, 0);
            const QString value = setting.section(u'=', 1).toLower();
            static const QStringList yes{QStringLiteral("yes"), QStringLiteral("true"),
                                         QStringLiteral("1")};
            static const QStringList no{QStringLiteral("no"), QStringLiteral("false"),
                                        QStringLiteral("0")};
            if (!yes.contains(value) && !no.contains(value))
                throw Refusal{ExitStatus::Usage,
                              QStringLiteral("--default %1: write KEY=YES or KEY=NO").arg(setting)};
            if (key == QLatin1StringView(keys::colourMultiLineStrings.name))
                options.colourMultiLineStrings = yes.contains(value);
            else if (key == QLatin1StringView(keys::colourAutocompleteWordsAsKeywords.name))
                options.colourAutocompleteWordsAsKeywords = yes.contains(value);
            else
                throw Refusal{
                    ExitStatus::Usage,
                    QStringLiteral("“%1” is no user default that colouring reads; they "
                                   "are “%2” and “%3”")
                        .arg(key, QLatin1StringView(keys::colourMultiLineStrings.name),
                             QLatin1StringView(keys::colourAutocompleteWordsAsKeywords.name))};
        }
        return options;
    }

    Theme theme() const
    {
        const QString kind = QStringLiteral("Themes");
        ThemeList list;
        const UserDefaults defaults(m_folders.defaultsFile());
        list.load(installedFolder(m_folders, kind), defaults.value(keys::selectedTheme),
                  m_folders.resources + u'/' + kind);
        const QString name = m_parser.value(QStringLiteral("theme"));
        if (!m_parser.isSet(QStringLiteral("theme"))) {
            if (list.selected())
                return *list.selected();
            throw Refusal{ExitStatus::Failure,
                          QStringLiteral("no theme is installed; name the file of one with "
                                         "--theme")};
        }
        QStringList names;
        for (const Theme& each : list.arrangedObjects()) {
            if (each.name() == name)
                return each;
            names += QStringLiteral("“%1”").arg(each.name());
        }
        if (std::optional<PropertyList> dictionary = dictionaryIn(name))
            return Theme(std::move(*dictionary), name);
        throw Refusal{ExitStatus::Usage,
                      QStringLiteral("“%1” is neither an installed theme nor a file; there are %2")
                          .arg(name, names.isEmpty() ? QStringLiteral("no themes")
                                                     : names.join(QStringLiteral(", ")))};
    }

    TextRange range(const TextSnapshot& text) const
    {
        if (!m_parser.isSet(QStringLiteral("range")))
            return text.range();
        return rangeIn(text, m_parser.value(QStringLiteral("range")));
    }

    /// \a lines of \a coloured alone.
    static ColouredText cut(ColouredText coloured, TextRange lines)
    {
        coloured.text = coloured.text.slice(lines);
        for (RoleRun& run : coloured.runs)
            run.range.location -= lines.location;
        return coloured;
    }

    const CliStreams& m_streams;
    ApplicationFolders m_folders;
    QCommandLineParser m_parser;
};

} // namespace

ExitStatus runHighlight(const QStringList& arguments, const CliStreams& streams)
{
    return answered(commandName, streams, [&] { Highlight(arguments, streams).run(); });
}

} // namespace quillory
