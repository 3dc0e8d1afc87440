#pragma once

#include <QByteArray>
#include <QString>
#include <QtPlugin>
#include <functional>
#include <memory>

class QWidget;

namespace quillory {

/// The pages of one PDF, as the plugin "quillory-pdf" shows them: one below the other, as wide as
/// the window until zoomed.
class PdfViewer
{
public:
    /// What part of the pages is in sight.
    struct Place
    {
        double zoom = 0; ///< 1 for the printed size; 0 for as wide as the window
        int x = 0;       ///< pixels
        int y = 0;       ///< pixels
    };

    virtual ~PdfViewer() = default;

    /// Belongs to this, unless another widget has become its parent.
    virtual QWidget* widget() = 0;
    virtual Place place() const = 0;
    /// As near as the pages allow; to be called once the widget has its size.
    virtual void show(const Place& place) = 0;
    virtual void zoomIn() = 0;
    virtual void zoomOut() = 0;
    virtual void fitWidth() = 0;
    virtual int pageCount() const = 0;
    virtual int currentPage() const = 0; ///< from 0
    virtual void setPageChanged(std::function<void()> changed) = 0;
};

/// What the plugin answers to.
class PdfViewerFactory
{
public:
    virtual ~PdfViewerFactory() = default;

    /// Null where \a pdf cannot be read; \a error says why then, fit to follow a colon.
    virtual std::unique_ptr<PdfViewer> newViewer(const QByteArray& pdf, QString& error) = 0;
};

} // namespace quillory

Q_DECLARE_INTERFACE(quillory::PdfViewerFactory, "quillory.PdfViewerFactory/1")
