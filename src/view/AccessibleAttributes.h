#pragma once

#include "text/TextRange.h"

#include <QString>

namespace quillory {

class TextViewWidget;

/// How a stretch of a text is shown, in the notation of IAccessible2: "font-size:10pt;…".
struct AccessibleAttributes
{
    QString text;
    TextRange range; ///< around the offset asked for, where all looks the same; of bounded length
};

AccessibleAttributes attributesAt(TextViewWidget& view, TextOffset offset);

} // namespace quillory
