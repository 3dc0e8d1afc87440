#include "cli/CommandArguments.h"
#include "document/DocumentReader.h"
#include "document/DocumentType.h"
#include "text/EncodingTable.h"

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
    constexpr QLatin1StringView command("info");
    return answered(command, streams, [&] {
        const CommandArguments given(command, arguments);
        const QString& path = given.onlyFile();
        const ReadResult file = readDocument(path, DocumentType::ofFile(path));
        if (!file.answer)
            throw Refusal{ExitStatus::Failure, file.message};
        given.wantsJson() ? printJson(file, streams.out) : printText(file, streams.out);
    });
}

} // namespace quillory
