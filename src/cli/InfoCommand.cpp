#include "cli/Cli.h"
#include "document/DocumentReader.h"
#include "document/DocumentType.h"
#include "text/EncodingTable.h"

#include <QCommandLineParser>
#include <QJsonDocument>
#include <QJsonObject>

namespace quillory {

namespace {

constexpr QLatin1StringView formNames[] = {QLatin1StringView("text"), QLatin1StringView("openstep"),
                                           QLatin1StringView("xml"), QLatin1StringView("binary")};

LineBreakFormat formatOf(const ReadResult& file)
{
    if (file.record.isQuilloryDocument || !file.text)
        return LineBreakFormat(file.record.lbFormat);
    return detectLBFormat(*file.text);
}

QString encodingName(const ReadResult& file)
{
    return file.record.encoding == StringEncoding::none ? QStringLiteral("unknown")
                                                        : displayName(file.record.encoding);
}

void printJson(const ReadResult& file, QTextStream& out)
{
    const QJsonObject object{
        {QStringLiteral("kind"), file.type},
        {QStringLiteral("encoding"), qint64(file.record.encoding)},
        {QStringLiteral("encodingName"), encodingName(file)},
        {QStringLiteral("lbFormat"), int(formatOf(file))},
        {QStringLiteral("plistKind"), file.record.plistKind},
    };
    out << QJsonDocument(object).toJson();
}

void printText(const ReadResult& file, QTextStream& out)
{
    out << "Kind:          " << file.type << '\n'
        << "Encoding:      " << quint32(file.record.encoding) << " (" << encodingName(file) << ")";
    if (file.record.encoding == StringEncoding::utf8 && file.layout.hasMark)
        out << " with byte-order mark";
    out << '\n' << "Line breaks:   " << label(formatOf(file));
    if (file.lineBreaks.isMixed())
        out << ", mixed: " << file.lineBreaks.lf << " LF, " << file.lineBreaks.cr << " CR, "
            << file.lineBreaks.crLf << " CRLF";
    out << '\n';
    if (file.record.isPlistFile)
        out << "Property list: " << formNames[file.record.plistKind] << '\n';
}

} // namespace

ExitStatus runInfo(const QStringList& arguments, const CliStreams& streams)
{
    constexpr QLatin1StringView name("info");
    QCommandLineParser parser;
    parser.addOption(
        {QStringLiteral("format"), QString(), QStringLiteral("form"), QStringLiteral("text")});
    if (!parser.parse(QStringList(name) + arguments))
        return usageError(streams, name, parser.errorText());
    const QString format = parser.value(QStringLiteral("format"));
    if (format != QLatin1StringView("text") && format != QLatin1StringView("json"))
        return usageError(streams, name, QStringLiteral("--format takes “text” or “json”"));
    if (parser.positionalArguments().size() != 1)
        return usageError(streams, name, QStringLiteral("name one file"));

    const QString path = parser.positionalArguments().constFirst();
    const ReadResult file = readDocument(path, DocumentType::ofFile(path));
    if (!file.answer) {
        streams.error << "quillory-cli info: " << file.message << '\n';
        return ExitStatus::Failure;
    }
    format == QLatin1StringView("json") ? printJson(file, streams.out)
                                        : printText(file, streams.out);
    return ExitStatus::Success;
}

} // namespace quillory
