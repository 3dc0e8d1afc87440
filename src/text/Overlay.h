#pragma once

#include "text/TextRange.h"

#include <QObject>
#include <optional>
#include <span>
#include <vector>

namespace quillory {

/// A colour by its parts, each from 0 to 1, in the sRGB colour space.
struct Colour
{
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;
    bool operator==(const Colour&) const = default;
};

/// What a stretch of text is drawn with on top of the plain text; compared by value.
struct OverlayAttributes
{
    std::optional<Colour> foreground;
    std::optional<Colour> background;

    bool isEmpty() const { return !foreground && !background; }
    bool operator==(const OverlayAttributes&) const = default;
};

struct OverlayRun
{
    TextRange range;
    OverlayAttributes attributes;
    bool operator==(const OverlayRun&) const = default;
};

/// A band from edge to edge behind the lines that \a range touches; behind one line where it is
/// empty.
struct LineBand
{
    TextRange range;
    Colour colour;
    bool operator==(const LineBand&) const = default;
};

/// Display-only attributes of stretches of a text: never saved, copied or printed.
///
/// The runs lie in two stacks around a gap, like the characters of a gap buffer: those before the
/// gap by their offset, those after it by their distance from the text's end. So an edit costs the
/// runs between it and the edit before, however many runs there are. Runs never overlap, are never
/// empty and always have attributes.
class Overlay : public QObject
{
    Q_OBJECT

public:
    explicit Overlay(QObject* parent = nullptr) : QObject(parent) {}

    /// Replaces all attributes of \a range.
    void setAttributes(TextRange range, const OverlayAttributes& attributes);
    void setBackground(TextRange range, Colour colour);
    void removeForeground(TextRange range);
    void removeBackground(TextRange range);

    /// Gives \a range the foregrounds of \a runs, which are in order, apart and within it, and none
    /// between them; backgrounds stay. Only the stretch in which that makes a difference is told of
    /// by changed(), once; where it makes none, nothing happens.
    void setForegrounds(TextRange range, std::span<const OverlayRun> runs);

    /// In order and apart.
    const std::vector<LineBand>& lineBands() const { return m_lineBands; }
    /// A few of them: all are looked at for every row that is painted.
    void setLineBands(const std::vector<LineBand>& bands);
    std::optional<LineBand> lineBand() const
    {
        return m_lineBands.empty() ? std::nullopt : std::optional(m_lineBands.front());
    }
    /// The only one. None takes it away. Costs the same however long the range is.
    void setLineBand(const std::optional<LineBand>& band);

    OverlayAttributes attributesAt(TextOffset offset) const;

    /// The runs that touch \a range, cut to it, in order.
    std::vector<OverlayRun> runs(TextRange range) const;
    bool isEmpty() const { return m_before.empty() && m_after.empty(); }
    size_t runCount() const { return m_before.size() + m_after.size(); }

    /// Moves the runs and the bands as the text moved. Characters put inside a run, or in the place
    /// of characters that one run covers, take its attributes; all others have none.
    void textChanged(const TextChange& change);

    /// The number of code units of the text that the runs lie over; for a fresh overlay 0.
    TextOffset textLength() const { return m_textLength; }

Q_SIGNALS:
    /// Attributes within \a range changed.
    void changed(quillory::TextRange range);
    /// The bands lie elsewhere, but for an edit, or look different.
    void lineBandChanged();

private:
    template<class Change>
    void rewrite(TextRange range, Change&& change);
    template<class Change>
    void rewriteQuietly(TextRange range, Change&& change);
    void moveGap(TextOffset offset) const;
    void appendBefore(const OverlayRun& run);
    void pushAfter(const OverlayRun& run);
    OverlayRun popAfter();
    OverlayRun firstAfter() const;
    void joinAtGap();

    // Where the gap stands is not part of the value, so looking may move it.
    mutable std::vector<OverlayRun> m_before; ///< ascending
    mutable std::vector<OverlayRun> m_after;  ///< descending; location holds the distance of the
                                              ///< run's start from the text's end
    TextOffset m_textLength = 0;
    std::vector<LineBand> m_lineBands;
};

} // namespace quillory
