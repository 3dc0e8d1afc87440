#pragma once

#include "text/Overlay.h"

#include <array>

namespace quillory {

/// What a document asks of its window. Each call may do nothing.
class DocumentWindowHost
{
public:
    virtual ~DocumentWindowHost() = default;

    /// Makes the document the delegate and target of the table of cloud documents.
    virtual void wireCloudTable() {}
    virtual void centreWindow() {}
    /// Places the info, settings, navigation and actions buttons; \a positions are points from the
    /// frame's edge.
    virtual void placeTitleBarButtons(const std::array<int, 4>& positions) { (void)positions; }
    virtual void setThumbnailBackground(Colour colour) { (void)colour; }
    /// The stretch of text that is in sight, which is all that is coloured; of lines that are wider
    /// than the window only the part in sight where that is known. Empty while nothing is.
    virtual TextRange visibleTextRange() { return {}; }
};

} // namespace quillory
