#include "cli/Cli.h"
#include "document/DocumentReader.h"
#include "document/DocumentType.h"
#include "document/DocumentWriter.h"
#include "document/RecoveryStore.h"
#include "document/SystemFileOps.h"
#include "foundation/ApplicationFolders.h"
#include "text/EncodingNames.h"
#include "text/EncodingTable.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace quillory {

namespace {

constexpr QLatin1StringView commandName("convert");

/// An encoding by its number, its registered name or the name that the editor shows.
StringEncoding encodingNamed(const QString& name)
{
    bool isNumber = false;
    const uint number = name.toUInt(&isNumber, 0);
    if (isNumber)
        return encodingInfo(StringEncoding(number)) ? StringEncoding(number) : StringEncoding::none;
    for (const EncodingInfo& info : knownEncodings()) {
        if (name.compare(QLatin1StringView(info.displayName), Qt::CaseInsensitive) == 0)
            return info.encoding;
    }
    return encodingForIanaName(name);
}

/// The value of an option that has to be one of a few words; its place among them, or -1.
qsizetype choiceOf(const QString& value, const QStringList& words)
{
    return words.indexOf(value);
}

} // namespace

ExitStatus runConvert(const QStringList& arguments, const CliStreams& streams)
{
    QCommandLineParser parser;
    const auto add = [&](const char* option) {
        parser.addOption({QString::fromLatin1(option), QString(), QStringLiteral("value")});
    };
    for (const char* option : {"from", "encoding", "line-breaks", "as"})
        add(option);
    if (!parser.parse(QStringList(commandName) + arguments))
        return usageError(streams, commandName, parser.errorText());
    if (parser.positionalArguments().size() != 2)
        return usageError(streams, commandName,
                          QStringLiteral("name the file to read and the file to write"));

    const auto wrong = [&](const char* option) {
        return usageError(
            streams, commandName,
            QStringLiteral("“%1” is no value for --%2")
                .arg(parser.value(QString::fromLatin1(option)), QString::fromLatin1(option)));
    };
    StringEncoding from = StringEncoding::none;
    StringEncoding encoding = StringEncoding::none;
    for (const auto& [option, target] :
         {std::pair("from", &from), std::pair("encoding", &encoding)}) {
        if (!parser.isSet(QString::fromLatin1(option)))
            continue;
        *target = encodingNamed(parser.value(QString::fromLatin1(option)));
        if (*target == StringEncoding::none)
            return wrong(option);
    }
    const QString breaks = parser.value(QStringLiteral("line-breaks"));
    const qsizetype breakFormat =
        choiceOf(breaks, {QString(), QStringLiteral("unix"), QStringLiteral("mac"),
                          QStringLiteral("windows")});
    if (breakFormat < 0)
        return wrong("line-breaks");
    const qsizetype kind = choiceOf(parser.value(QStringLiteral("as")),
                                    {QString(), QStringLiteral("text"), QStringLiteral("archive")});
    if (kind < 0)
        return wrong("as");

    const QString source = parser.positionalArguments().at(0);
    ReadResult file = readDocument(source, DocumentType::ofFile(source));
    if (!file.answer) {
        streams.error << "quillory-cli convert: " << file.message << '\n';
        return ExitStatus::Failure;
    }
    if (from != StringEncoding::none && !decodeAs(file, from)) {
        streams.error << "quillory-cli convert: “" << source << "” is not " << displayName(from)
                      << '\n';
        return ExitStatus::Failure;
    }
    if (!file.text) {
        streams.error << "quillory-cli convert: the encoding of “" << source
                      << "” is not known; name it with --from\n";
        return ExitStatus::Failure;
    }

    SaveJob job;
    job.path = parser.positionalArguments().at(1);
    job.text = *file.text;
    job.keepsText = false; // the file that was read holds it
    job.record = file.record;
    job.layout = file.layout;
    const bool toArchive =
        kind == 2 || (kind == 0 && DocumentType::ofNewFile(job.path) == DocumentType::archive);
    job.type = toArchive                              ? DocumentType::archive
               : kind == 0 && file.record.isPlistFile ? DocumentType::propertyList
                                                      : DocumentType::text;
    if (kind == 1)
        job.record.isPlistFile = false;
    if (!file.record.isQuilloryDocument)
        job.record.lbFormat = int(detectLBFormat(job.text));
    if (breakFormat > 0)
        job.record.lbFormat = int(breakFormat);
    if (encoding != StringEncoding::none) {
        job.record.encoding = encoding;
        job.layout = standardLayout(encoding);
    }
    SystemFileOps ops;
    const ApplicationFolders folders = ApplicationFolders::fromEnvironment(
        QProcessEnvironment::systemEnvironment(), QCoreApplication::applicationDirPath());
    RecoveryStore recovery(ops, folders.recoveryFolder());
    const SaveResult result = job.run(ops, recovery);
    if (!result.written) {
        streams.error << "quillory-cli convert: " << result.message << '\n';
        return ExitStatus::Failure;
    }
    return ExitStatus::Success;
}

} // namespace quillory
