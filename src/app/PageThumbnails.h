#pragma once

#include "app/PagesView.h"

namespace quillory {

/// All pages, small and with their numbers, to choose one from.
class PageThumbnails : public PagesView
{
    Q_OBJECT

public:
    explicit PageThumbnails(QWidget* parent = nullptr);

    /// Marks \a page, counted from 0, as the one that is read, and has it in sight.
    void setChosen(int page);

    QSize sizeHint() const override;

Q_SIGNALS:
    void chosen(int page);

protected:
    void paintCaption(QPainter& painter, int page, const QRect& rect) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent*) override {}

private:
    int m_chosen = 0;
};

} // namespace quillory
