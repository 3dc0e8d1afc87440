#include "cli/CommandArguments.h"
#include "cli/InstalledDefinitions.h"
#include "commands/PreviewBase.h"
#include "commands/PreviewSource.h"

#include <QSaveFile>

namespace quillory {

ExitStatus runPreview(const QStringList& arguments, const CliStreams& streams)
{
    constexpr QLatin1StringView command("preview");
    return answered(command, streams, [&] {
        const QString definitionOption = QStringLiteral("definition");
        const QString baseOption = QStringLiteral("base");
        const CommandArguments given(command, arguments, {definitionOption, baseOption});
        if (given.files().size() != 2)
            throw Refusal{ExitStatus::Usage, QStringLiteral("name a file and an HTML file")};
        const QString& path = given.files().constFirst();
        const QString& out = given.files().constLast();
        const ApplicationFolders folders = installedFolders();
        const Definition definition = definitionFor(folders, given.value(definitionOption), path);
        const PreviewBase base = PreviewBase::of(given.value(baseOption).value_or(QString()), path);
        const PreviewSource source{
            textOfFile(path),
            int(definition.number(QLatin1StringView("previewFormat")).value_or(0)),
            given.value(baseOption) && base.server.isEmpty() ? QUrl::fromLocalFile(base.path)
                                                             : base.server,
            PreviewSource::styleSheetIn(folders.resources)};
        if (source.isTooLong())
            throw Refusal{ExitStatus::Failure,
                          QStringLiteral("“%1” is too long to be shown as a web page").arg(path)};
        const QByteArray page = source.page();
        QSaveFile file(out);
        if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size() || !file.commit())
            throw Refusal{
                ExitStatus::Failure,
                QStringLiteral("“%1” could not be written: %2").arg(out, file.errorString())};
    });
}

} // namespace quillory
