#include "cli/CommandArguments.h"

#include "document/DocumentReader.h"
#include "document/DocumentType.h"

namespace quillory {

ExitStatus answered(QLatin1StringView command, const CliStreams& streams,
                    const std::function<void()>& work)
{
    try {
        work();
        return ExitStatus::Success;
    } catch (const Refusal& refusal) {
        if (refusal.status == ExitStatus::Usage)
            return usageError(streams, command, refusal.message);
        streams.error << "quillory-cli " << command << ": " << refusal.message << '\n';
        return refusal.status;
    }
}

CommandArguments::CommandArguments(QLatin1StringView command, const QStringList& arguments,
                                   const QStringList& options, const QStringList& switches)
{
    const QString format = QStringLiteral("format");
    for (const QString& option : options)
        m_parser.addOption({option, QString(), QStringLiteral("value")});
    for (const QString& name : switches)
        m_parser.addOption(QCommandLineOption(name));
    m_parser.addOption({format, QString(), QStringLiteral("form"), QStringLiteral("text")});
    if (!m_parser.parse(QStringList(command) + arguments))
        throw Refusal{ExitStatus::Usage, m_parser.errorText()};
    m_wantsJson = m_parser.value(format) == QLatin1StringView("json");
    if (!m_wantsJson && m_parser.value(format) != QLatin1StringView("text"))
        throw Refusal{ExitStatus::Usage, QStringLiteral("--format takes “text” or “json”")};
    m_files = m_parser.positionalArguments();
}

const QString& CommandArguments::onlyFile() const
{
    if (m_files.size() != 1)
        throw Refusal{ExitStatus::Usage, QStringLiteral("name one file")};
    return m_files.constFirst();
}

std::optional<QString> CommandArguments::value(const QString& option) const
{
    return m_parser.isSet(option) ? std::optional(m_parser.value(option)) : std::nullopt;
}

TextSnapshot textOfFile(const QString& path)
{
    ReadResult file = readDocument(path, DocumentType::ofFile(path));
    if (!file.answer)
        throw Refusal{ExitStatus::Failure, file.message};
    if (!file.text)
        throw Refusal{ExitStatus::Failure,
                      QStringLiteral("the encoding of “%1” is not known; write it in another "
                                     "with “quillory-cli convert --from”")
                          .arg(path)};
    return *file.text;
}

TextRange rangeIn(const TextSnapshot& text, const QString& value)
{
    const QStringList parts = value.split(u',');
    bool isLocation = false;
    bool isLength = false;
    const TextRange range{parts.value(0).toLongLong(&isLocation),
                          parts.value(1).toLongLong(&isLength)};
    if (parts.size() != 2 || !isLocation || !isLength || range.location < 0 || range.length < 0 ||
        range.location > text.length() || range.length > text.length() - range.location)
        throw Refusal{ExitStatus::Usage,
                      QStringLiteral("--range takes LOCATION,LENGTH in UTF-16 code units, inside "
                                     "the text, which has %1")
                          .arg(text.length())};
    return range;
}

} // namespace quillory
