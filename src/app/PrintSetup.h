#pragma once

#include <QPageLayout>

namespace quillory {

/// How a document is printed, as far as it is chosen anew for each.
struct PrintSetup
{
    QPageLayout layout = usualLayout();
    bool isLayoutChosen = false; ///< else a printer's own paper is taken
    bool lineNumbers = false;
    bool colours = false;

    /// The locale's paper, upright.
    static QPageLayout usualLayout();
};

} // namespace quillory
