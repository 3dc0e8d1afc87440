#pragma once

#include "text/Selection.h"
#include "view/TextViewport.h"

#include <QRegion>

namespace quillory {

/// Finds what of a viewport has to be painted anew: it remembers what was shown, follows the edits,
/// and compares with what is to be shown now.
class RepaintTracker
{
public:
    void followEdit(const TextChange& change);
    /// Characters in \a range look different.
    void noteChanged(TextRange range);
    /// Everything looks different.
    void noteAllChanged() { m_all = true; }

    /// What differs from the last call.
    QRegion takeDamage(TextViewport& viewport, const std::vector<Selection>& selections);

private:
    /// A row as it was painted.
    struct Shown
    {
        TextRange range;
        int y;
        std::vector<Selection> selections; ///< those that touch it, cut to just outside it
    };

    static std::vector<Shown> shownBy(TextViewport& viewport,
                                      const std::vector<Selection>& selections);
    bool isClean(const Shown& before, const Shown& now) const;

    std::vector<Shown> m_shown;
    double m_x = 0;
    std::vector<TextRange> m_changed;
    bool m_all = true;
};

} // namespace quillory
