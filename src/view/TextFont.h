#pragma once

#include <QFont>

namespace quillory {

/// The font that a text is shown in, and the measures that follow from it, in logical pixels.
///
/// Every row has the same height whatever fallback fonts it needs, so that a row's place is its
/// number times the height.
class TextFont
{
public:
    static constexpr int defaultTabColumns = 4;

    /// \a tabColumns: how many columns lie between two tab stops; at least 1.
    explicit TextFont(const QFont& font, int tabColumns = defaultTabColumns);

    const QFont& font() const { return m_font; }
    int tabColumns() const { return m_tabColumns; }

    /// The width of a column: of a digit, which in a monospaced font is that of every character.
    double advance() const { return m_advance; }
    double tabDistance() const { return m_advance * m_tabColumns; }
    int rowHeight() const { return m_rowHeight; }
    /// From the top of a row down to its baseline.
    int baseline() const { return m_baseline; }
    /// Whether the font, or one that stands in for it, has the control pictures (U+2400…).
    /// Loads the fonts that may stand in when it is first asked.
    bool hasControlPictures() const;

private:
    QFont m_font;
    int m_tabColumns;
    double m_advance;
    int m_rowHeight;
    int m_baseline;
    mutable std::optional<bool> m_hasControlPictures; ///< none until asked for
};

} // namespace quillory
