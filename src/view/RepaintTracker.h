#pragma once

#include "text/Overlay.h"
#include "text/Selection.h"
#include "view/TextViewport.h"

#include <QRegion>
#include <optional>

namespace quillory {

/// Finds what of a viewport has to be painted anew: it remembers what was shown, follows the edits,
/// and compares with what is to be shown now. So a line that was coloured anew as it was before is
/// not painted again.
class RepaintTracker
{
public:
    void followEdit(const TextChange& change);
    /// Characters in \a range look different.
    void noteChanged(TextRange range);
    /// Attributes in \a range may be others. Of no cost, however often it is called.
    void noteRecoloured(TextRange range);
    /// The carets at \a places, and no others, hang on a certain side.
    void noteAffinity(const std::vector<CaretPlace>& places);
    /// Everything looks different.
    void noteAllChanged() { m_all = true; }

    /// What differs from the last call.
    QRegion takeDamage(TextViewport& viewport, const std::vector<Selection>& selections,
                       const Overlay& overlay);

private:
    /// A row as it was painted.
    struct Shown
    {
        TextRange range;
        int y;
        std::vector<Selection> selections; ///< those that touch it, cut to just outside it
        std::vector<OverlayRun> runs;      ///< counted from the row's start; not of a long row
        std::optional<Colour> band;
    };

    static std::vector<Shown> shownBy(TextViewport& viewport,
                                      const std::vector<Selection>& selections,
                                      const Overlay& overlay);
    bool isClean(const Shown& before, const Shown& now) const;

    std::vector<Shown> m_shown;
    double m_x = 0;
    std::vector<TextRange> m_changed;
    std::optional<TextRange> m_recoloured; ///< all that noteRecoloured() was told lies in it
    std::vector<CaretPlace> m_affinity;
    bool m_all = true;
};

} // namespace quillory
