#pragma once

#include "app/PdfViewer.h"

#include <QBuffer>
#include <QPdfDocument>
#include <QPdfView>
#include <QPointer>

namespace quillory {

class PdfPages : public PdfViewer
{
public:
    explicit PdfPages(const QByteArray& pdf);
    ~PdfPages() override;

    QPdfDocument::Error error() const { return m_document.error(); }

    QWidget* widget() override { return m_view; }
    Place place() const override;
    void show(const Place& place) override;
    void zoomIn() override;
    void zoomOut() override;
    void fitWidth() override;
    int pageCount() const override { return m_document.pageCount(); }
    int currentPage() const override;
    void setPageChanged(std::function<void()> changed) override;

private:
    double zoom() const;
    void setZoom(double zoom);

    QBuffer m_bytes;
    QPdfDocument m_document;
    QPointer<QPdfView> m_view;
};

class PdfPagesFactory : public QObject, public PdfViewerFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "quillory.PdfViewerFactory/1")
    Q_INTERFACES(quillory::PdfViewerFactory)

public:
    std::unique_ptr<PdfViewer> newViewer(const QByteArray& pdf, QString& error) override;
};

} // namespace quillory
