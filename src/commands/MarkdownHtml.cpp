#include "commands/MarkdownHtml.h"

#include <QHash>
#include <md4c-html.h>

namespace quillory {

namespace {

/// The characters of \a html, without tags, references resolved as far as names need it.
QString plainText(const QString& html)
{
    QString text;
    bool isTag = false;
    for (const QChar c : html) {
        if (c == u'<')
            isTag = true;
        else if (c == u'>')
            isTag = false;
        else if (!isTag)
            text += c;
    }
    return text.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
        .replace(QStringLiteral("&quot;"), QStringLiteral("\""))
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"))
        .trimmed();
}

/// Lower case, blanks as hyphens, without punctuation: as GitHub names headings.
QString anchorOf(const QString& heading)
{
    QString anchor;
    const QList<uint> characters = heading.toLower().toUcs4();
    for (const char32_t c : characters) {
        if (c == U' ')
            anchor += u'-';
        else if (QChar::isLetterOrNumber(c) || QChar::isMark(c) || c == U'-' || c == U'_')
            anchor += QChar::fromUcs4(c);
    }
    return anchor;
}

/// Names the headings while the renderer's output goes by.
class HeadingNames
{
public:
    explicit HeadingNames(MarkdownHtml& made) : m_made(made) {}

    void take(QByteArrayView piece)
    {
        // The renderer gives each tag of a heading as one piece; what is typed as HTML comes in
        // pieces of whole lines or characters.
        const bool opens = piece.size() == 4 && piece.startsWith("<h") && piece[3] == '>' &&
                           piece[2] >= '1' && piece[2] <= '6';
        if (opens) {
            m_start = m_made.html.size();
        } else if (m_start >= 0 && piece.startsWith("</h")) {
            name(QString::fromUtf8(m_made.html.sliced(m_start + 4)));
            m_start = -1;
        }
        m_made.html += piece;
    }

private:
    void name(const QString& heading)
    {
        const QString text = plainText(heading);
        if (m_made.title.isEmpty())
            m_made.title = text;
        const QString anchor = anchorOf(text);
        if (anchor.isEmpty())
            return;
        const int before = m_uses[anchor]++;
        const QString id = before == 0 ? anchor : anchor + u'-' + QString::number(before);
        m_made.html.insert(m_start + 3, " id=\"" + id.toUtf8() + '"');
    }

    MarkdownHtml& m_made;
    QHash<QString, int> m_uses;
    qsizetype m_start = -1; ///< of the heading that is being rendered
};

} // namespace

MarkdownHtml MarkdownHtml::of(QByteArrayView markdown)
{
    MarkdownHtml made;
    made.html.reserve(markdown.size() + markdown.size() / 2);
    HeadingNames headings(made);
    md_html(
        markdown.data(), MD_SIZE(markdown.size()),
        [](const MD_CHAR* bytes, MD_SIZE size, void* names) {
            static_cast<HeadingNames*>(names)->take(QByteArrayView(bytes, size));
        },
        &headings, MD_DIALECT_GITHUB, MD_HTML_FLAG_SKIP_UTF8_BOM);
    return made;
}

} // namespace quillory
