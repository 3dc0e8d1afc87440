#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace quillory {

/// What Markdown in GitHub's dialect (CommonMark 0.30 with tables, task lists, strikethrough and
/// addresses that become links) comes to as HTML. HTML in it stays as it is.
struct MarkdownHtml
{
    QByteArray html; ///< UTF-8: the content of a page's body
    QString title;   ///< of the first heading; empty without one

    /// Headings get the names that GitHub gives them, for links inside the page.
    static MarkdownHtml of(QByteArrayView markdown);
};

} // namespace quillory
