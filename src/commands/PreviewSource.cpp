#include "commands/PreviewSource.h"

#include "commands/MarkdownHtml.h"

#include <QFile>
#include <QRegularExpression>

namespace quillory {

namespace {

constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");
constexpr qsizetype longestHead = 1 << 16; ///< code units in which a text's own <base> is found

QString baseElement(const QUrl& url)
{
    return QStringLiteral("<base href=\"%1\">")
        .arg(QString::fromLatin1(url.toEncoded()).toHtmlEscaped());
}

/// Where an element of the head can be put: behind blanks, comments and the document type.
qsizetype headStart(const QString& html)
{
    static const QRegularExpression prologue(
        QStringLiteral("\\A\\x{feff}?(?:\\s+|<!--.*?-->|<!doctype[^>]*>|<\\?[^>]*>)*+"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return prologue.match(html.left(longestHead)).capturedEnd();
}

/// The address in the text's own <base>, which is relative to the one of the preview.
QUrl ownBase(const QString& html)
{
    static const QRegularExpression element(
        QStringLiteral("<base\\s[^>]*?href\\s*=\\s*(?:\"([^\"]*)\"|'([^']*)'|([^\\s>]+))"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = element.match(html.left(longestHead));
    return match.hasMatch() ? QUrl(match.captured(match.lastCapturedIndex())) : QUrl();
}

QByteArray htmlPage(QString html, const QUrl& server)
{
    if (!server.isEmpty())
        html.insert(headStart(html), baseElement(server.resolved(ownBase(html))));
    return html.toUtf8();
}

QByteArray markdownPage(const QString& text, const QUrl& server, const QString& styleSheet)
{
    QFile style(styleSheet);
    const QByteArray rules = style.open(QIODevice::ReadOnly) ? style.readAll() : QByteArray();
    const MarkdownHtml body = MarkdownHtml::of(text.toUtf8());
    QByteArray page("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n");
    if (!server.isEmpty())
        page += baseElement(server).toUtf8() + '\n';
    if (!body.title.isEmpty())
        page += "<title>" + body.title.toHtmlEscaped().toUtf8() + "</title>\n";
    page += "<style>\n" + rules + "</style>\n</head>\n<body>\n<main>\n";
    page += body.html;
    page += "</main>\n</body>\n</html>\n";
    return page;
}

} // namespace

QByteArray PreviewSource::page() const
{
    const QString whole = text.string();
    return byteOrderMark + (previewFormat == markdown ? markdownPage(whole, server, styleSheet)
                                                      : htmlPage(whole, server));
}

} // namespace quillory
