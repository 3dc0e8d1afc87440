#include "editing/find/FindTemplate.h"

#include <QRegularExpression>

namespace quillory {

FindTemplate::FindTemplate(const QString& text, bool isTemplate)
{
    if (!isTemplate) {
        m_parts.push_back({text});
        return;
    }
    static const QRegularExpression special(QStringLiteral("\\\\(.)|\\$(?:(\\d)|\\{(\\w+)\\})"),
                                            QRegularExpression::DotMatchesEverythingOption |
                                                QRegularExpression::UseUnicodePropertiesOption);
    qsizetype at = 0;
    for (auto matches = special.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        m_parts.push_back({text.sliced(at, match.capturedStart() - at)});
        at = match.capturedEnd();
        const QString escaped = match.captured(1);
        if (escaped == QLatin1Char('n'))
            m_parts.push_back({QStringLiteral("\n")});
        else if (escaped == QLatin1Char('t'))
            m_parts.push_back({QStringLiteral("\t")});
        else if (!escaped.isEmpty())
            m_parts.push_back({escaped});
        else
            m_parts.push_back({match.captured(), match.captured(2) + match.captured(3)});
    }
    m_parts.push_back({text.sliced(at)});
}

QString FindTemplate::replacement(const FindWalk& walk) const
{
    QString made;
    for (const Part& part : m_parts) {
        bool isNumber = false;
        int number = part.group.toInt(&isNumber);
        if (!isNumber && !part.group.isEmpty())
            number = walk.groupNamed(part.group);
        const bool isGroup = isNumber || number > 0;
        made += isGroup ? walk.group(number).value_or(part.text) : part.text;
    }
    return made;
}

} // namespace quillory
