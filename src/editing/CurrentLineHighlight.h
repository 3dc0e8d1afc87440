#pragma once

#include "text/Overlay.h"

#include <QObject>

namespace quillory {

class QPTextView;
class UserDefaults;

/// Keeps a band behind the lines of the selection while the user default "highlight" is on; with
/// several selections, of the primary one, so that the band tells which of them the view follows.
///
/// The band is display only, see Overlay. Whatever is selected, moving it costs two look-ups of a
/// line.
class CurrentLineHighlight : public QObject
{
    Q_OBJECT

public:
    /// Where the theme does not say.
    static constexpr Colour defaultBand{0.229F, 0.229F, 0.229F, 0.2F};

    /// All three outlive this.
    CurrentLineHighlight(const QPTextView& textView, Overlay& overlay,
                         const UserDefaults& defaults);

    /// Bands the line or lines of the selection, if the user default is on.
    void highlight();
    /// Moves the band to \a range. Where it lies there, nothing happens.
    void highlightLineRange(TextRange range);
    /// Gives the band its colour anew, or takes it away; to be called when the user default
    /// changed.
    void changeHighlight();

    /// Of the band.
    Colour highColor() const { return m_themeColour.value_or(defaultBand); }
    /// The theme's own, where it has one. The band takes it at once.
    void setThemeColour(const std::optional<Colour>& colour);

    /// What was banded last; it follows the edits, also while the user default is off.
    TextRange lastLineHighlightRange() const { return m_lastLineHighlightRange; }

private:
    bool isOn() const;

    const QPTextView& m_textView;
    Overlay& m_overlay;
    const UserDefaults& m_defaults;
    TextRange m_lastLineHighlightRange;
    std::optional<Colour> m_themeColour;
};

} // namespace quillory
