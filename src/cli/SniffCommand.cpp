#include "cli/CommandArguments.h"
#include "document/FileBytes.h"
#include "document/TECSniffer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstring>

namespace quillory {

namespace {

void printJson(const std::vector<RankedEncoding>& ranked, QTextStream& out)
{
    QJsonArray list;
    for (const RankedEncoding& each : ranked)
        list.append(QJsonObject{{QStringLiteral("encoding"), qint64(each.encoding)},
                                {QStringLiteral("encodingName"), displayName(each.encoding)},
                                {QStringLiteral("errors"), qint64(each.errors)}});
    out << QJsonDocument(list).toJson();
}

void printText(const std::vector<RankedEncoding>& ranked, QTextStream& out)
{
    for (const RankedEncoding& each : ranked) {
        out << quint32(each.encoding) << " (" << displayName(each.encoding) << ')';
        if (each.errors > 0)
            out << ", " << each.errors << (each.errors == 1 ? " error" : " errors");
        out << '\n';
    }
}

} // namespace

ExitStatus runSniff(const QStringList& arguments, const CliStreams& streams)
{
    constexpr QLatin1StringView command("sniff");
    return answered(command, streams, [&] {
        const CommandArguments given(command, arguments);
        const QString& path = given.onlyFile();
        const FileBytes file = readFile(path);
        if (file.error != 0)
            throw Refusal{ExitStatus::Failure,
                          QStringLiteral("“%1” could not be read: %2.")
                              .arg(path, QString::fromLocal8Bit(std::strerror(file.error)))};
        std::optional<TECSniffer> sniffer = TECSniffer::init();
        if (!sniffer)
            throw Refusal{ExitStatus::Failure,
                          QStringLiteral("no encoding can be converted; is ICU's data there?")};
        const std::vector<RankedEncoding> ranked = sniffer->ranked(file.bytes.view());
        given.wantsJson() ? printJson(ranked, streams.out) : printText(ranked, streams.out);
    });
}

} // namespace quillory
