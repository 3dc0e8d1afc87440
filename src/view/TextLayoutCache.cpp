#include "view/TextLayoutCache.h"

namespace quillory {

namespace {

// About four pages, at some 40 bytes a unit and a kilobyte a layout. A layout costs as many points
// as it has units, and this many on top.
constexpr int layoutCost = 64;
constexpr int maximumCost = 96 * 1024;

/// How \a text is to be laid out, which is counted.
LineLayout::Style counted(const QString& text, const TextLayoutCache::Style& style,
                          double wrapWidth, WorkCounters& counters)
{
    ++(style.isChunk ? counters.chunksLaidOut : counters.linesLaidOut);
    counters.unitsShaped += text.size();
    return {wrapWidth, style.direction, style.tabPhase};
}

} // namespace

TextLayoutCache::TextLayoutCache(TextFont font) : m_font(std::move(font)), m_layouts(maximumCost) {}

void TextLayoutCache::setFont(const TextFont& font)
{
    m_font = font;
    m_layouts.clear();
}

void TextLayoutCache::setWrapWidth(double width)
{
    if (width == m_wrapWidth)
        return;
    m_wrapWidth = width;
    m_layouts.clear();
}

std::shared_ptr<LineLayout> TextLayoutCache::layout(const QString& text, const Style& style)
{
    const Key key{text, style};
    if (const auto* known = m_layouts.object(key))
        return *known;
    auto layout = laidOut(text, style);
    keep(key, layout);
    return layout;
}

int TextLayoutCache::layoutOfFullRows(const QString& text, const Style& style)
{
    auto layout = laidOut(text, style);
    if (layout->rowStart(layout->rowCount() - 1) > layout->length() / 2)
        layout->dropLastRow();
    keep({text.left(layout->length()), style}, layout);
    return layout->length();
}

std::shared_ptr<LineLayout> TextLayoutCache::laidOut(const QString& text, const Style& style)
{
    return std::make_shared<LineLayout>(text, m_font,
                                        counted(text, style, m_wrapWidth, m_counters));
}

void TextLayoutCache::keep(const Key& key, const std::shared_ptr<LineLayout>& layout)
{
    m_layouts.insert(key, new std::shared_ptr<LineLayout>(layout),
                     int(key.text.size()) + layoutCost);
}

LineLayout TextLayoutCache::passingLayout(const QString& text, const Style& style)
{
    return {text, m_font, counted(text, style, m_wrapWidth, m_counters)};
}

} // namespace quillory
