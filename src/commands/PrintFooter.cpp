#include "commands/PrintFooter.h"

#include "foundation/UserDefaults.h"

#include <QCoreApplication>

namespace quillory {

namespace {

QString translate(const char* text)
{
    return QCoreApplication::translate("PrintFooter", text);
}

} // namespace

PrintFooter PrintFooter::from(const UserDefaults& defaults)
{
    PrintFooter footer;
    const auto written = [&](const DefaultsKey<QString>& key) {
        return defaults.isWritten(key) ? defaults.value(key) : QStringLiteral("(null)");
    };
    footer.title = written(keys::footerTitle);
    footer.author = written(keys::footerAuthor);
    footer.includesTitle = defaults.value(keys::footerIncludeTitle);
    footer.includesAuthor = defaults.value(keys::footerIncludeAuthor);
    const int numbers = defaults.value(keys::prefsPrintNumbers);
    footer.includesNumber = numbers != 0;
    footer.isRaised = numbers == 1;
    footer.skipsFirstPage = defaults.value(keys::prefsSkip1Page);
    footer.numberStyle = defaults.value(keys::prefsPrintNumbersTag);
    footer.fontName = defaults.value(defaults.value(keys::convertMarkdown) ? keys::convertedFontName
                                                                           : keys::plainFontName);
    return footer;
}

QString PrintFooter::pageText(int page, int pageCount) const
{
    switch (numberStyle) {
    case 0:
        return QString::number(page);
    case 1:
        return translate("-- %1 --").arg(page);
    case 2:
        return translate("Page %1").arg(page);
    case 3:
        return translate("Page %1 of %2")
            .arg(page)
            .arg(pageCount > 0 ? QString::number(pageCount) : QStringLiteral("…"));
    default:
        return {};
    }
}

QString PrintFooter::text(int page, int pageCount) const
{
    const QString separator = QStringLiteral(" | ");
    QString text;
    if (includesTitle)
        text += title + separator;
    if (includesAuthor)
        text += author + separator;
    if (includesNumber)
        text += pageText(page, pageCount);
    return text;
}

double PrintFooter::top(double pageHeight, double footerHeight) const
{
    const double distance = isRaised ? 70 : 50;
    return pageHeight - (distance + footerHeight) / 2;
}

} // namespace quillory
