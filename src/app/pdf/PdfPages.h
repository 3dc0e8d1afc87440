#pragma once

#include "app/PdfFile.h"

#include <QBuffer>
#include <QObject>
#include <QPdfDocument>

namespace quillory {

class PdfPages : public PdfFile
{
public:
    explicit PdfPages(const QByteArray& pdf);

    QPdfDocument::Error error() const { return m_document.error(); }
    bool isEmpty() const { return m_sizes.empty(); }

    std::vector<QSizeF> pageSizes() const override { return m_sizes; }
    QImage render(int page, double scale, const QRect& part) override;
    std::vector<int> find(int page, const QString& needle) override;
    std::vector<PageMarks> marks(int page, const std::vector<int>& starts, int length) override;

private:
    QBuffer m_bytes;
    QPdfDocument m_document{nullptr};
    std::vector<QSizeF> m_sizes;
};

class PdfPagesFactory : public QObject, public PdfFileFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "quillory.PdfFileFactory/1")
    Q_INTERFACES(quillory::PdfFileFactory)

public:
    std::shared_ptr<PdfFile> open(const QByteArray& pdf, QString& error) override;
};

} // namespace quillory
