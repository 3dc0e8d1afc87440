#pragma once

#include "editing/SelectionMerging.h"

#include <QFont>
#include <QMimeData>

namespace quillory {

/// Text for the clipboard or for a drag that holds a snapshot: however much text it is, it costs
/// something only when somebody asks for it. It is offered as plain text, in UTF-8 without a
/// detour, and as HTML: where it is not very long, as preformatted text in \a font without any
/// colours, or else as \a html says.
/// Outside of this program an unpaired surrogate becomes U+FFFD.
class SnapshotMimeData : public QMimeData
{
    Q_OBJECT

public:
    /// UTF-16 code units; longer text is not offered as HTML.
    static constexpr TextOffset longestHtml = 500'000;

    SnapshotMimeData(JoinedText text, const QFont& font)
        : m_text(std::move(text)), m_fontFamily(font.family())
    {}

    SnapshotMimeData(JoinedText text, QString html)
        : m_text(std::move(text)), m_html(std::move(html))
    {}

    const TextSnapshot& text() const { return m_text.text; }
    /// Where the text was put together from several selections.
    const std::vector<TextRange>& parts() const { return m_text.parts; }

    /// Whether it was selected by words, and is to be set apart from others where it goes.
    bool isByWords() const { return m_byWords; }
    void setByWords(bool byWords) { m_byWords = byWords; }

    static QString utf8Text() { return QStringLiteral("text/plain;charset=utf-8"); }

    bool hasFormat(const QString& mimeType) const override;
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& mimeType, QMetaType type) const override;

private:
    QString html() const;

    JoinedText m_text;
    QString m_fontFamily;
    bool m_byWords = false;
    QString m_html; ///< empty for that of the text in its font
};

} // namespace quillory
