#include "editing/CurrentLineHighlight.h"

#include "editing/QPTextView.h"
#include "foundation/UserDefaults.h"

namespace quillory {

CurrentLineHighlight::CurrentLineHighlight(const QPTextView& textView, Overlay& overlay,
                                           const UserDefaults& defaults)
    : m_textView(textView), m_overlay(overlay), m_defaults(defaults)
{
    connect(&textView.textStorage(), &TextStorage::edited, this, [this](const TextChange& change) {
        m_lastLineHighlightRange = mapped(m_lastLineHighlightRange, change);
    });
}

bool CurrentLineHighlight::isOn() const
{
    return m_defaults.value(keys::highlight);
}

void CurrentLineHighlight::highlight()
{
    if (isOn())
        highlightLineRange(m_textView.string().lineRangeForRange(m_textView.selectedRange()));
}

void CurrentLineHighlight::highlightLineRange(TextRange range)
{
    if (range == m_lastLineHighlightRange && m_overlay.lineBand())
        return;
    m_lastLineHighlightRange = range;
    m_overlay.setLineBand(LineBand{range, highColor()});
}

void CurrentLineHighlight::changeHighlight()
{
    if (isOn())
        m_overlay.setLineBand(LineBand{m_lastLineHighlightRange, highColor()});
    else
        m_overlay.setLineBand(std::nullopt);
}

void CurrentLineHighlight::setThemeColour(const std::optional<Colour>& colour)
{
    m_themeColour = colour;
    changeHighlight();
}

} // namespace quillory
