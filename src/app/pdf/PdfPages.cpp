#include "app/pdf/PdfPages.h"

#include <QCoreApplication>
#include <QPdfPageNavigator>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

namespace quillory {

namespace {

constexpr double zoomStep = 1.2;
constexpr double smallest = 0.1;
constexpr double largest = 8;
constexpr double pointsPerInch = 72;

QString reason(QPdfDocument::Error error)
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("PdfPages", text); };
    switch (error) {
    case QPdfDocument::Error::IncorrectPassword:
        return tr("it asks for a password");
    case QPdfDocument::Error::UnsupportedSecurityScheme:
        return tr("it is encrypted in a way that is not known here");
    default:
        return tr("it is damaged, or no PDF");
    }
}

} // namespace

PdfPages::PdfPages(const QByteArray& pdf) : m_document(nullptr), m_view(new QPdfView(nullptr))
{
    m_bytes.setData(pdf);
    m_bytes.open(QIODevice::ReadOnly);
    m_document.load(&m_bytes);
    m_view->setPageMode(QPdfView::PageMode::MultiPage);
    m_view->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setDocument(&m_document);
}

PdfPages::~PdfPages()
{
    delete m_view;
}

PdfViewer::Place PdfPages::place() const
{
    return {m_view->zoomMode() == QPdfView::ZoomMode::Custom ? m_view->zoomFactor() : 0,
            m_view->horizontalScrollBar()->value(), m_view->verticalScrollBar()->value()};
}

void PdfPages::show(const Place& place)
{
    if (place.zoom > 0)
        setZoom(place.zoom);
    m_view->horizontalScrollBar()->setValue(place.x);
    m_view->verticalScrollBar()->setValue(place.y);
}

void PdfPages::zoomIn()
{
    setZoom(zoom() * zoomStep);
}

void PdfPages::zoomOut()
{
    setZoom(zoom() / zoomStep);
}

void PdfPages::fitWidth()
{
    m_view->setZoomMode(QPdfView::ZoomMode::FitToWidth);
}

int PdfPages::currentPage() const
{
    return m_view->pageNavigator()->currentPage();
}

void PdfPages::setPageChanged(std::function<void()> changed)
{
    QObject::connect(m_view->pageNavigator(), &QPdfPageNavigator::currentPageChanged, m_view,
                     [changed = std::move(changed)] { changed(); });
}

/// Also while the pages are as wide as the window, which the view does not tell.
double PdfPages::zoom() const
{
    const double width = m_document.pagePointSize(std::max(0, currentPage())).width();
    if (m_view->zoomMode() == QPdfView::ZoomMode::Custom || width <= 0)
        return m_view->zoomFactor();
    const QMargins margins = m_view->documentMargins();
    const int room = m_view->viewport()->width() - margins.left() - margins.right();
    return room / (width * m_view->screen()->logicalDotsPerInch() / pointsPerInch);
}

void PdfPages::setZoom(double zoom)
{
    m_view->setZoomFactor(std::clamp(zoom, smallest, largest));
    m_view->setZoomMode(QPdfView::ZoomMode::Custom);
}

std::unique_ptr<PdfViewer> PdfPagesFactory::newViewer(const QByteArray& pdf, QString& error)
{
    auto pages = std::make_unique<PdfPages>(pdf);
    if (pages->error() == QPdfDocument::Error::None && pages->pageCount() > 0)
        return pages;
    error = reason(pages->error());
    return nullptr;
}

} // namespace quillory
