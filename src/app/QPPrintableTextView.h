#pragma once

#include "commands/PrintFooter.h"
#include "syntax/ColouringJob.h"
#include "view/PrintedText.h"

#include <QFont>
#include <QMarginsF>
#include <QPageRanges>
#include <functional>

class QPageLayout;
class QPagedPaintDevice;
class QPainter;

namespace quillory {

/// Prints a text, with a footer on each page. Belongs to one thread at a time, which may be any.
class QPPrintableTextView
{
public:
    /// Of a page, as far as the user asks for no others: top and bottom, left and right.
    static constexpr QMarginsF margins{30, 40, 30, 40}; // points

    struct Job
    {
        ColouringJob text;
        TextRange range; ///< what of it to print
        QFont font;      ///< its size is in points
        PrintFooter footer = {};
        bool lineNumbers = false;
        bool colours = false;
        QPageRanges pages = {}; ///< counted from 1; empty for all
        bool lastPageFirst = false;
    };

    enum class Outcome
    {
        Printed,
        Cancelled,
        NoSuchPages,
        Failed ///< by the device
    };

    explicit QPPrintableTextView(Job job) : m_job(std::move(job)) {}

    struct Progress
    {
        double share = 0; ///< of the work, from 0 to 1
        int page = 0;     ///< the one drawn last, counted from 1; 0 before the first
    };

    /// Prints to \a device, whose page layout tells the size of the paper and the margins. \a goOn
    /// is told now and then how far it is, and ends it by false. Memory does not grow with the
    /// number of pages, but for what the device keeps.
    Outcome print(QPagedPaintDevice& device, const std::function<bool(Progress)>& goOn);

    /// Lays the text out on paper as \a layout has it; see PrintedText::paginate().
    bool paginate(const QPageLayout& layout, const std::function<bool(double)>& goOn);
    /// Paints \a page, counted from 1 and one of those found, with its footer. The painter's origin
    /// is the corner of the paper; one unit of it is a point.
    void paintPage(QPainter& painter, int page);

    /// Those found so far; after paginate(), and so print(), all of them.
    int pageCount() const { return m_text ? m_text->pageCount() : 0; }
    /// The page printed last, counted from 1; 0 before the first.
    int currentPage() const { return m_currentPage; }

private:
    void drawPageBorderWithSize(QPainter& painter, QSizeF size, int page) const;
    std::vector<PrintedText::Ink> inksOf(TextRange range) const;

    Job m_job;
    std::unique_ptr<PrintedText> m_text;
    QSizeF m_paper;   ///< points
    QPointF m_corner; ///< of the text, from that of the paper; points
    bool m_isPaginated = false;
    int m_currentPage = 0;
};

} // namespace quillory
