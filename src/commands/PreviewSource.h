#pragma once

#include "text/TextSnapshot.h"

#include <QByteArray>
#include <QUrl>

namespace quillory {

/// A text, and how it becomes the web page that its preview shows.
struct PreviewSource
{
    /// Of a definition's "previewFormat"; what is neither counts as html.
    enum Format
    {
        html = 0, ///< as it stands
        markdown = 1
    };

    /// UTF-16 code units; a web engine takes some hundred times as much memory for a page.
    static constexpr TextOffset longest = TextOffset(32) << 20;

    TextSnapshot text;
    int previewFormat = html;
    QUrl server;        ///< see PreviewBase
    QString styleSheet; ///< the path of that for Markdown

    static QString styleSheetIn(const QString& resources)
    {
        return resources + QStringLiteral("/Preview/Markdown.css");
    }

    bool isTooLong() const { return text.length() > longest; }

    /// The page as UTF-8 with a byte-order mark, so that no declaration in the text counts. On any
    /// thread; O(text).
    QByteArray page() const;
};

} // namespace quillory
