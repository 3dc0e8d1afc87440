#include "app/PageThumbnails.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace quillory {

PageThumbnails::PageThumbnails(QWidget* parent) : PagesView(PageRenderer::Overview, parent)
{
    setFocusPolicy(Qt::NoFocus); // the keyboard stays with the pages
    setAccessibleName(tr("Thumbnails"));
    setMinimumWidth(80);
    setCaptionHeight(fontMetrics().height() + 4);
}

QSize PageThumbnails::sizeHint() const
{
    return {150, 400};
}

void PageThumbnails::setChosen(int page)
{
    if (std::exchange(m_chosen, page) == page || page >= pageCount())
        return;
    reveal(page, {{}, pageSize(page)});
    viewport()->update();
}

void PageThumbnails::paintCaption(QPainter& painter, int page, const QRect& rect)
{
    const bool isChosen = page == m_chosen;
    const QString number = QString::number(page + 1);
    if (isChosen) {
        const int width = fontMetrics().horizontalAdvance(number) + 12;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().highlight());
        painter.drawRoundedRect(
            QRect(rect.center().x() - width / 2, rect.top() + 3, width, rect.height() - 3), 4, 4);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setBrush(Qt::NoBrush);
    }
    painter.setPen(palette().color(isChosen ? QPalette::HighlightedText : QPalette::WindowText));
    painter.drawText(rect.adjusted(0, 3, 0, 0), Qt::AlignCenter, number);
}

void PageThumbnails::mousePressEvent(QMouseEvent* event)
{
    const int page = pageAt(event->pos());
    if (event->button() == Qt::LeftButton && page >= 0)
        Q_EMIT chosen(page);
}

} // namespace quillory
