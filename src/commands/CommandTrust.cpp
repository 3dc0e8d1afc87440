#include "commands/CommandTrust.h"

#include "commands/ActionsMenu.h"
#include "commands/CommandLine.h"
#include "syntax/Definition.h"
#include "syntax/PropertyListFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QUrl>

namespace quillory {

namespace {

/// The bytes of a file of a size that definitions have; nothing where there is none.
std::optional<QByteArray> bytesOf(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > largestPropertyListFile ||
        !file.open(QFile::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

bool isHidden(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Separator_Space:
        return character != U' ';
    default:
        return false;
    }
}

QString settingsKey(const CommandItem& item)
{
    return QStringLiteral("commands/") + item.fingerprint();
}

} // namespace

QString withVisibleCharacters(const QString& text)
{
    QString result;
    for (const uint character : text.toUcs4()) {
        if (isHidden(character))
            result += QStringLiteral("\\u{%1}").arg(character, 0, 16);
        else
            result += QString::fromUcs4(reinterpret_cast<const char32_t*>(&character), 1);
    }
    return result;
}

CommandTrust::CommandTrust(QString shipped, const QString& state)
    : m_shipped(std::move(shipped)),
      m_file(state.isEmpty() ? QString() : state + QStringLiteral("/TrustedCommands.conf"))
{}

bool CommandTrust::needsTrust(const CommandItem& item)
{
    switch (item.kind) {
    case CommandKind::Server:
    case CommandKind::Terminal:
    case CommandKind::LaTeX:
        return true;
    case CommandKind::Url:
    case CommandKind::Help: {
        const QString scheme = QUrl(item.string.value_or(QString())).scheme();
        return scheme != QLatin1StringView("https") && scheme != QLatin1StringView("http") &&
               scheme != QLatin1StringView("mailto");
    }
    default:
        return false;
    }
}

bool CommandTrust::isTrusted(const CommandItem& item, const Definition& definition) const
{
    return isShipped(item, definition) ||
           (!m_file.isEmpty() &&
            QSettings(m_file, QSettings::IniFormat).contains(settingsKey(item)));
}

/// The file is one that was shipped, byte for byte, and the item, which was read from it some time
/// ago, is still among those that it holds.
bool CommandTrust::isShipped(const CommandItem& item, const Definition& definition) const
{
    const QString shipped = m_shipped + u'/' + QFileInfo(definition.path()).fileName();
    const auto bytes = bytesOf(definition.path());
    if (!bytes || bytes != bytesOf(shipped))
        return false;
    const std::vector<ActionEntry> entries =
        actionEntries(propertyListAt(shipped).dictionary[QStringLiteral("commandItems")]);
    return std::any_of(entries.begin(), entries.end(),
                       [&](const ActionEntry& entry) { return entry.representedObject == item; });
}

void CommandTrust::trust(const CommandItem& item) const
{
    if (!m_file.isEmpty())
        QSettings(m_file, QSettings::IniFormat)
            .setValue(settingsKey(item), item.title.value_or(QString()));
}

TrustQuestion CommandTrust::question(const CommandItem& item, const Definition& definition)
{
    const QString body = item.string.value_or(QString());
    TrustQuestion question{item, definition.title(), withVisibleCharacters(body)};
    if (item.kind == CommandKind::Terminal || item.kind == CommandKind::LaTeX) {
        QStringList lines;
        for (const QString& word : divideIntoArrayFromString(body))
            lines += (lines.isEmpty() ? QString() : QStringLiteral("    ")) +
                     withVisibleCharacters(word);
        question.command = lines.join(u'\n');
    }
    return question;
}

} // namespace quillory
