#pragma once

#include "app/PagesView.h"

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QToolButton;

namespace quillory {

class PageThumbnails;

/// Pages to be read, with a bar above for going and zooming about, and thumbnails at the side where
/// they are wanted.
class PagesPane : public QWidget
{
    Q_OBJECT

public:
    explicit PagesPane(QWidget* parent = nullptr);

    /// What draws the pages from now on. Those shown before stay in sight until sizes are set.
    void setRenderer(std::unique_ptr<PageRenderer> renderer);
    /// Of the pages that were found, in points; \a areAll where none are to come.
    void setPageSizes(const std::vector<QSizeF>& sizes, bool areAll = true);
    void redraw();

    PagesView& view() const { return *m_view; }
    PageThumbnails& thumbnails() const { return *m_thumbnails; }
    void setThumbnailsVisible(bool visible);

    /// A button at the right end of the bar that does what \a act does, as \a keys do.
    QToolButton* addTool(const QString& text, const QString& toolTip,
                         const QList<QKeySequence>& keys, const std::function<void()>& act);
    QHBoxLayout& bar() const { return *m_bar; }

private:
    void fillBar();
    void showPage();
    void showZoom();
    void goToTyped();

    std::unique_ptr<PageRenderer> m_renderer;
    QHBoxLayout* m_bar;
    PageThumbnails* m_thumbnails;
    PagesView* m_view;
    QToolButton* m_sideButton = nullptr;
    QLineEdit* m_page = nullptr;
    QLabel* m_count = nullptr;
    QToolButton* m_zoom = nullptr;
    bool m_areAll = true;
};

} // namespace quillory
