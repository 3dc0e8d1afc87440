#pragma once

#include "view/TextGeometry.h"

#include <optional>

namespace quillory {

/// In a monospaced font the places in a row of plain characters can be counted, for a fraction of
/// what laying the row out costs.
class PlainColumns
{
public:
    explicit PlainColumns(const TextGeometry& geometry) : m_geometry(geometry) {}

    /// Whether the font and the view are such that rows may be counted.
    bool areUsable() const;
    /// The place between two characters of \a row nearest to \a x, in logical pixels from the left
    /// edge of the text; none where characters beyond ASCII come before it.
    std::optional<TextOffset> placeAt(const TextGeometry::Row& row, double x) const;
    /// The x of \a offset, which lies on \a row.
    std::optional<double> xOf(const TextGeometry::Row& row, TextOffset offset) const;

private:
    const TextGeometry& m_geometry;
};

} // namespace quillory
