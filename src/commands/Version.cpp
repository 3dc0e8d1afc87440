#include "commands/Version.h"

#include <QRegularExpression>
#include <algorithm>

namespace quillory {

namespace {

std::strong_ordering compareParts(const QString& a, const QString& b)
{
    bool isNumberA = false;
    bool isNumberB = false;
    const qulonglong numberA = a.toULongLong(&isNumberA);
    const qulonglong numberB = b.toULongLong(&isNumberB);
    if (isNumberA && isNumberB)
        return numberA <=> numberB;
    if (isNumberA != isNumberB)
        return isNumberA ? std::strong_ordering::less : std::strong_ordering::greater;
    return a.compare(b) <=> 0;
}

} // namespace

std::optional<Version> Version::from(const QString& text)
{
    // Numbers of nine digits fit; what stands behind "+" is of no account.
    static const QRegularExpression form(
        QStringLiteral("^[vV]?([0-9]{1,9}(?:\\.[0-9]{1,9}){0,7})"
                       "(?:-([0-9A-Za-z-]{1,40}(?:\\.[0-9A-Za-z-]{1,40}){0,7}))?"
                       "(?:\\+[0-9A-Za-z.-]{1,80})?$"));
    const QRegularExpressionMatch match = form.match(text.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    Version version;
    for (const QString& number : match.captured(1).split(u'.'))
        version.m_numbers.push_back(number.toUInt());
    while (!version.m_numbers.empty() && version.m_numbers.back() == 0)
        version.m_numbers.pop_back();
    version.m_preRelease = match.captured(2).split(u'.', Qt::SkipEmptyParts);
    return version;
}

std::strong_ordering Version::operator<=>(const Version& other) const
{
    if (const auto order = m_numbers <=> other.m_numbers; std::is_neq(order))
        return order;
    if (isPreRelease() != other.isPreRelease())
        return isPreRelease() ? std::strong_ordering::less : std::strong_ordering::greater;
    return std::lexicographical_compare_three_way(m_preRelease.begin(), m_preRelease.end(),
                                                  other.m_preRelease.begin(),
                                                  other.m_preRelease.end(), compareParts);
}

} // namespace quillory
