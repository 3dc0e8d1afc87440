#pragma once

#include "syntax/ColouringState.h"
#include "syntax/RecolouringEngine.h"
#include "text/TextStorage.h"

#include <QTimer>
#include <chrono>

namespace quillory {

/// Puts the colours of what is seen of a text into its overlay.
///
/// A page of ordinary lines is coloured at once. One that reaches into a line of more than
/// `quickLength` units is coloured whole on another thread, and a little later shown; until then
/// the text keeps the colours that it has, and typing never waits; it is coloured anew when the
/// typing pauses, so that the other thread does not take the processor from it. So is the first
/// page far down in a text, which has to be looked through for open comments before. Of lines of
/// more than `wholeLength` units only a stretch around what is seen is coloured, as though it were
/// a text of its own; there a literal or a comment that begins far away is not known of.
class PageColouring : public QObject
{
    Q_OBJECT

public:
    // All in UTF-16 code units.
    static constexpr TextOffset quickLength = TextOffset(24) * 1024; ///< about one frame's time
    static constexpr TextOffset wholeLength = TextOffset(8) * 1024 * 1024;
    static constexpr TextOffset stretchMargin =
        TextOffset(1024) * 1024; ///< on either side of what is seen
    /// How far behind what was looked through for open comments a page may begin that is coloured
    /// at once: looking through more is left to another thread.
    static constexpr TextOffset quickLook = TextOffset(1024) * 1024;
    /// Of a longer page only so much is coloured, and the lines at its end: the rest is a line out
    /// of sight to the right.
    static constexpr TextOffset longestPage = TextOffset(256) * 1024;

    /// Without an edit, before a text that was edited is coloured on another thread again.
    static constexpr std::chrono::milliseconds pause{100};

    /// So many runs are kept before those out of sight are dropped.
    static constexpr size_t maximumRuns = 1 << 17;

    /// All of the arguments outlive this; reset() has to be called when \a state or \a roles
    /// became others.
    PageColouring(const TextStorage& text, Overlay& overlay, const ColouringState& state,
                  const ColourRoles& roles);

    void removeAllColours();
    void removeColoursFromRange(TextRange range);
    /// In the place of all attributes that \a range had.
    void setColour(ColourRole role, TextRange range);

    /// Colours the lines of \a range at once. O(their length).
    void recolourRange(TextRange range);
    /// Colours the lines of \a visible, now or later as above. Asked for again while nothing has
    /// changed, it costs nothing.
    void recolourPage(TextRange visible);

    void reset();

Q_SIGNALS:
    /// The pattern under \a key of the definition ran into a limit.
    void limitReached(const QString& key);
    /// Colours that were made on another thread are there; the page has to be asked for again.
    void pageReady();

private:
    void colourInBackground(TextRange lines, TextRange visible, TextOffset end);
    bool isQuickToReach(TextOffset offset) const { return offset <= m_lookedAt + quickLook; }
    void apply(const Recolouring& colours, TextRange window);
    bool isReadyFor(TextRange visible) const;
    bool isWaitingForPause();

    const TextStorage& m_text;
    Overlay& m_overlay;
    const ColouringState& m_state;
    const ColourRoles& m_roles;

    /// What another thread made, of which a part is shown.
    struct Prepared
    {
        TextSnapshot text;
        int generation = -1;
        TextOffset end = 0; ///< up to which open comments were looked for
        Recolouring colours;
    };
    Prepared m_prepared;
    int m_generation = 0; ///< of state and roles
    /// Up to where the text remembers what is open; a little more or less after edits.
    TextOffset m_lookedAt = 0;
    std::optional<TextRange> m_coloured; ///< the lines of the last page, as they still are
    bool m_busy = false;
    QTimer m_pause;
    bool m_edited = false; ///< since the pause was last over
};

} // namespace quillory
