#pragma once

#include <QString>
#include <QStringList>

namespace quillory {

/// Which of \a languages, tags as in "de_AT", comes nearest to \a wanted, which may be a locale's
/// name as in "de_DE.UTF-8": the same, the same in another country, English; else the first. Empty
/// where there are none.
QString nearestLanguage(const QStringList& languages, const QString& wanted);

/// The name of \a tag for a menu, in the user's language: "English (United States)".
QString languageName(const QString& tag);

} // namespace quillory
