#include "cli/Cli.h"
#include "document/DocumentReader.h"
#include "document/DocumentType.h"
#include "document/DocumentWriter.h"
#include "document/RecoveryStore.h"
#include "document/SystemFileOps.h"
#include "editing/TextTransforms.h"
#include "foundation/ApplicationFolders.h"
#include "text/TextEncoder.h"

#include <QCoreApplication>
#include <QFileDevice>
#include <array>

namespace quillory {

namespace {

constexpr QLatin1StringView commandName("transform");

TextSnapshot trim(const TextSnapshot& text)
{
    const std::array<TextRange, 1> whole{text.range()};
    return text.replacing(withoutTrailingBlanks(text, whole).edits);
}

struct Transform
{
    QLatin1StringView name;
    TextSnapshot (*apply)(const TextSnapshot&);
};

constexpr Transform transforms[]{
    {QLatin1StringView("trim"), trim},
    {QLatin1StringView("zap"), zapGremlinsInString},
    {QLatin1StringView("unwrap"), removeLineEndingsInString},
    {QLatin1StringView("reformat"), removeTabsInString},
};

/// Writes \a text in the form that \a file had; what went wrong, or nothing.
QString writeTo(QTextStream& out, const TextSnapshot& text, const ReadResult& file)
{
    out.flush();
    QIODevice* device = out.device();
    const auto sink = [&](QByteArrayView bytes) {
        return device && device->write(bytes.data(), bytes.size()) == bytes.size();
    };
    const std::optional<EncodingFailure> failure =
        encode(text, file.record.encoding, file.layout, sink);
    auto* asFile = qobject_cast<QFileDevice*>(device);
    const bool isWritten = !failure && (!asFile || asFile->flush());
    return isWritten ? QString() : QStringLiteral("the output cannot be written");
}

SaveResult writeTo(const QString& path, const TextSnapshot& text, const ReadResult& file)
{
    SaveJob job;
    job.path = path;
    job.type = DocumentType::text;
    job.text = text;
    job.keepsText = false; // the file that was read holds it
    job.record = file.record;
    job.record.isPlistFile = false;
    job.record.lbFormat = int(detectLBFormat(*file.text));
    job.layout = file.layout;
    SystemFileOps ops;
    const ApplicationFolders folders = ApplicationFolders::fromEnvironment(
        QProcessEnvironment::systemEnvironment(), QCoreApplication::applicationDirPath());
    RecoveryStore recovery(ops, folders.recoveryFolder());
    return job.run(ops, recovery);
}

} // namespace

ExitStatus runTransform(const QStringList& arguments, const CliStreams& streams)
{
    const auto failed = [&](const QString& message) {
        streams.error << "quillory-cli " << commandName << ": " << message << '\n';
        return ExitStatus::Failure;
    };
    const auto* transform =
        std::find_if(std::begin(transforms), std::end(transforms),
                     [&](const Transform& t) { return t.name == arguments.value(0); });
    if (transform == std::end(transforms))
        return usageError(streams, commandName,
                          QStringLiteral("say what to do: trim, zap, unwrap or reformat"));
    if (arguments.size() > 3)
        return usageError(streams, commandName,
                          QStringLiteral("name at most the file to read and the file to write"));

    const QString named = arguments.value(1, QStringLiteral("-"));
    const QString source = named == QLatin1StringView("-") ? QStringLiteral("/dev/stdin") : named;
    const ReadResult file = readDocument(source, DocumentType::ofNewFile(source));
    if (!file.answer)
        return failed(file.message);
    if (!file.text)
        return failed(QStringLiteral("the encoding of “%1” is not known").arg(named));
    const TextSnapshot text = converted(transform->apply(*file.text), detectLBFormat(*file.text));
    const QString problem = arguments.size() < 3 ? writeTo(streams.out, text, file)
                                                 : writeTo(arguments[2], text, file).message;
    return problem.isEmpty() ? ExitStatus::Success : failed(problem);
}

} // namespace quillory
