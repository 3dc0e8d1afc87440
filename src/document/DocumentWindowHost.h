#pragma once

#include "text/Overlay.h"

#include <array>

namespace quillory {

/// What a document asks of its window while it opens. Each call may do nothing.
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
};

} // namespace quillory
