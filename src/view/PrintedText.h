#pragma once

#include "text/TextStorage.h"
#include "view/TextGeometry.h"

#include <QSizeF>
#include <functional>
#include <memory>
#include <vector>

class QPainter;

namespace quillory {

/// A text wrapped to the width of a page and divided into pages, which are painted one by one.
/// Belongs to one thread, which may be any. Between two pages nothing of them is kept but where
/// they begin.
class PrintedText
{
public:
    struct Form
    {
        QFont font; ///< its size is in points
        int tabColumns = TextFont::defaultTabColumns;
        QSizeF area; ///< of a page, in points
        bool lineNumbers = false;
        qint64 firstLine = 1; ///< the number of the text's first line
    };

    /// A stretch of the text in a colour of its own.
    struct Ink
    {
        TextRange range;
        QRgb colour = 0;
    };

    PrintedText(const TextSnapshot& text, const Form& form);

    /// Finds where the pages begin, which lays out all of the text. \a goOn is told now and then
    /// which share of it is done, from 0 to 1, and ends it by false; it may paint the pages that
    /// were found. False when it was ended.
    bool paginate(const std::function<bool(double)>& goOn);
    /// Those whose end was found. At least 1 after paginate(), also for an empty text.
    int pageCount() const { return m_pageCount; }
    /// What \a page, counted from 0, shows, line breaks included.
    TextRange rangeOfPage(int page) const;

    /// Paints \a page, counted from 0, with its left upper corner at the painter's origin; one unit
    /// of the painter is a point. \a inks are in order and apart; what is in none of them is black.
    void paintPage(QPainter& painter, int page, const std::vector<Ink>& inks);

private:
    void paintNumber(QPainter& painter, const TextGeometry::Row& row, double y) const;
    std::vector<ColourRun> coloursOf(const TextGeometry::Segment& segment,
                                     const std::vector<Ink>& inks) const;

    TextStorage m_storage;
    TextFont m_font;
    std::unique_ptr<TextGeometry> m_geometry;
    std::vector<TextOffset> m_starts; ///< of pages; the last one's end may be unknown yet
    int m_pageCount = 0;
    qint64 m_firstLine;
    double m_gutter = 0; ///< the room for line numbers
    int m_rowsPerPage;
};

} // namespace quillory
