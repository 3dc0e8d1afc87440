#include "editing/spelling/SpellingLanguage.h"

#include <QLocale>
#include <unicode/uloc.h>

namespace quillory {

namespace {

/// "de" of "de_DE" and of "de-DE@euro".
QString baseOf(const QString& tag)
{
    qsizetype end = 0;
    while (end < tag.size() && tag.at(end).isLetter())
        ++end;
    return tag.left(end).toLower();
}

/// "de_DE" of "de-DE.UTF-8@euro".
QString normalised(QString tag)
{
    tag = tag.section(u'.', 0, 0).section(u'@', 0, 0);
    return tag.replace(u'-', u'_');
}

/// The tag of \a base itself, else of the country that speaks for the language, else any of it.
QString ofBase(const QStringList& languages, const QString& base)
{
    if (base.isEmpty())
        return {};
    const QString usual = QLocale(base).name();
    for (const QString& candidate : {base, usual}) {
        if (languages.contains(candidate))
            return candidate;
    }
    for (const QString& language : languages) {
        if (baseOf(language) == base)
            return language;
    }
    return {};
}

} // namespace

QString nearestLanguage(const QStringList& languages, const QString& wanted)
{
    const QString tag = normalised(wanted);
    for (const QString& language : languages) {
        if (normalised(language).compare(tag, Qt::CaseInsensitive) == 0)
            return language;
    }
    for (const QString& base : {baseOf(tag), QStringLiteral("en")}) {
        QString found = ofBase(languages, base);
        if (!found.isEmpty())
            return found;
    }
    return languages.value(0);
}

QString languageName(const QString& tag)
{
    constexpr int32_t capacity = 200;
    UChar name[capacity];
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray locale = tag.toUtf8();
    const QByteArray shownIn = QLocale().name().toUtf8();
    const int32_t length =
        uloc_getDisplayName(locale.constData(), shownIn.constData(), name, capacity, &status);
    if (U_FAILURE(status) || length == 0 || length > capacity)
        return tag;
    QString result(reinterpret_cast<const QChar*>(name), length);
    result[0] = result[0].toUpper();
    return result;
}

} // namespace quillory
