#pragma once

#include "view/LineLayout.h"
#include "view/WorkCounters.h"

#include <QCache>
#include <memory>

namespace quillory {

/// The lines laid out lately, found by what they show. So an edit has nothing to invalidate: lines
/// that did not change are found again wherever they have moved to, and equal lines share a layout.
class TextLayoutCache
{
public:
    explicit TextLayoutCache(TextFont font);

    const TextFont& font() const { return m_font; }
    void setFont(const TextFont& font);

    /// The width at which lines wrap, in logical pixels; 0 for not at all.
    double wrapWidth() const { return m_wrapWidth; }
    void setWrapWidth(double width);

    struct Style
    {
        /// Of a whole line it is taken from its text.
        Qt::LayoutDirection direction = Qt::LayoutDirectionAuto;
        bool isChunk = false; ///< a piece of a long line
        double tabPhase = 0;  ///< see LineLayout::Style
        bool operator==(const Style&) const = default;
    };

    /// The layout of \a text, a display text. Stays valid as long as the pointer is kept.
    std::shared_ptr<LineLayout> layout(const QString& text, const Style& style);

    /// Wrapped, lays \a text out and keeps its rows but the last, as the layout of what they show.
    /// Answers how many units that is; all of them where the last row takes half of them or more,
    /// and then all is kept.
    int layoutOfFullRows(const QString& text, const Style& style);

    /// The same as layout(), of a text that is asked for once and not kept.
    LineLayout passingLayout(const QString& text, const Style& style);

    WorkCounters& counters() { return m_counters; }

private:
    struct Key
    {
        QString text;
        Style style;
        bool operator==(const Key&) const = default;
        friend size_t qHash(const Key& key, size_t seed) { return ::qHash(key.text, seed); }
    };

    std::shared_ptr<LineLayout> laidOut(const QString& text, const Style& style);
    void keep(const Key& key, const std::shared_ptr<LineLayout>& layout);

    TextFont m_font;
    double m_wrapWidth = 0;
    QCache<Key, std::shared_ptr<LineLayout>> m_layouts;
    WorkCounters m_counters;
};

} // namespace quillory
