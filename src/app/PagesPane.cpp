#include "app/PagesPane.h"

#include "app/PageThumbnails.h"
#include "app/TintedIcon.h"

#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QShortcut>
#include <QSplitter>
#include <QToolButton>

namespace quillory {

namespace {

using Keys = QList<QKeySequence>;

constexpr int percents[] = {25, 50, 75, 100, 125, 150, 200, 400};

QString percentText(double zoom)
{
    return PagesPane::tr("%1 %").arg(qRound(zoom * 100));
}

} // namespace

PagesPane::PagesPane(QWidget* parent)
    : QWidget(parent), m_bar(new QHBoxLayout), m_thumbnails(new PageThumbnails(this)),
      m_view(new PagesView(PageRenderer::Reading, this))
{
    auto* splitter = new QSplitter(this);
    splitter->addWidget(m_thumbnails);
    splitter->addWidget(m_view);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(1);
    m_thumbnails->hide();
    m_bar->setContentsMargins(6, 3, 6, 3);
    m_bar->setSpacing(2);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(m_bar);
    layout->addWidget(splitter, 1);
    setFocusProxy(m_view);
    fillBar();
    connect(m_view, &PagesView::currentPageChanged, this, &PagesPane::showPage);
    connect(m_view, &PagesView::zoomChanged, this, &PagesPane::showZoom);
    connect(m_thumbnails, &PageThumbnails::chosen, m_view, &PagesView::goToPage);
}

QToolButton* PagesPane::addTool(const QString& text, const QString& toolTip, const Keys& keys,
                                const std::function<void()>& act)
{
    auto* button = new QToolButton(this);
    button->setText(text);
    const QString shortcut =
        keys.isEmpty() ? QString()
                       : QStringLiteral(" (%1)").arg(keys[0].toString(QKeySequence::NativeText));
    button->setToolTip(toolTip + shortcut);
    button->setAccessibleName(toolTip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus); // the keyboard stays with the pages
    connect(button, &QToolButton::clicked, this, act);
    for (const QKeySequence& key : keys)
        connect(new QShortcut(key, this, nullptr, nullptr, Qt::WindowShortcut),
                &QShortcut::activated, this, act);
    m_bar->addWidget(button);
    return button;
}

void PagesPane::fillBar()
{
    m_sideButton = addTool(QString(), tr("Thumbnails"), Keys{Qt::Key_F4},
                           [this] { setThumbnailsVisible(m_thumbnails->isHidden()); });
    m_sideButton->setIcon(tintedIcon(QStringLiteral("thumbnails")));
    m_sideButton->setCheckable(true);
    m_bar->addSpacing(6);
    addTool(QString(), tr("Previous page"), Keys{Qt::CTRL | Qt::Key_PageUp}, [this] {
        m_view->goToPage(m_view->currentPage() - 1);
    })->setIcon(tintedIcon(QStringLiteral("up")));
    m_page = new QLineEdit(this);
    m_page->setAlignment(Qt::AlignRight);
    m_page->setAccessibleName(tr("Page"));
    m_page->setToolTip(tr("Go to a page (Ctrl+L)"));
    m_page->setFixedWidth(m_page->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + 12);
    m_page->setValidator(new QIntValidator(1, 9'999'999, m_page));
    connect(m_page, &QLineEdit::returnPressed, this, &PagesPane::goToTyped);
    connect(m_page, &QLineEdit::editingFinished, this, &PagesPane::showPage);
    connect(new QShortcut(Qt::CTRL | Qt::Key_L, this), &QShortcut::activated, this, [this] {
        m_page->setFocus();
        m_page->selectAll();
    });
    m_bar->addWidget(m_page);
    m_count = new QLabel(this);
    m_count->setContentsMargins(4, 0, 2, 0);
    m_bar->addWidget(m_count);
    addTool(QString(), tr("Next page"), Keys{Qt::CTRL | Qt::Key_PageDown}, [this] {
        m_view->goToPage(m_view->currentPage() + 1);
    })->setIcon(tintedIcon(QStringLiteral("down")));
    m_bar->addSpacing(6);
    addTool(QStringLiteral("−"), tr("Smaller"), Keys{Qt::CTRL | Qt::Key_Minus},
            [this] { m_view->zoomOut(); });
    m_zoom = new QToolButton(this);
    m_zoom->setAutoRaise(true);
    m_zoom->setFocusPolicy(Qt::NoFocus);
    m_zoom->setPopupMode(QToolButton::InstantPopup);
    m_zoom->setToolTip(tr("Size of the pages"));
    m_bar->addWidget(m_zoom);
    addTool(QStringLiteral("+"), tr("Larger"),
            Keys{Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, [this] { m_view->zoomIn(); });
    m_bar->addStretch(1);

    auto* menu = new QMenu(m_zoom);
    const auto add = [&](const QString& text, const QKeySequence& key, auto act) {
        QAction* action = menu->addAction(text, this, act);
        action->setShortcut(key);
        addAction(action);
    };
    add(tr("Fit &Width"), Qt::CTRL | Qt::Key_0, [this] { m_view->setFit(PagesView::Fit::Width); });
    add(tr("Fit &Page"), Qt::CTRL | Qt::Key_9, [this] { m_view->setFit(PagesView::Fit::Page); });
    menu->addSeparator();
    for (const int percent : percents)
        add(percentText(percent / 100.0),
            percent == 100 ? QKeySequence(Qt::CTRL | Qt::Key_1) : QKeySequence(),
            [this, percent] { m_view->setZoom(percent / 100.0); });
    m_zoom->setMenu(menu);
    showZoom();
    showPage();
}

void PagesPane::setRenderer(std::unique_ptr<PageRenderer> renderer)
{
    m_view->setRenderer(renderer.get());
    m_thumbnails->setRenderer(renderer.get());
    m_renderer = std::move(renderer);
}

void PagesPane::setPageSizes(const std::vector<QSizeF>& sizes, bool areAll)
{
    m_areAll = areAll;
    m_view->setPageSizes(sizes);
    m_thumbnails->setPageSizes(sizes);
    showPage();
}

void PagesPane::redraw()
{
    m_view->redraw();
    m_thumbnails->redraw();
}

void PagesPane::setThumbnailsVisible(bool visible)
{
    m_thumbnails->setVisible(visible);
    m_sideButton->setChecked(visible);
    m_thumbnails->setChosen(m_view->currentPage());
}

void PagesPane::showPage()
{
    const int page = m_view->currentPage();
    m_thumbnails->setChosen(page);
    if (m_page->hasFocus() && m_page->isModified())
        return;
    m_page->setText(QString::number(page + 1));
    const QString count = QLocale().toString(m_view->pageCount());
    m_count->setText(m_areAll ? tr("of %1").arg(count) : tr("of %1…").arg(count));
}

void PagesPane::goToTyped()
{
    const int page = m_page->text().toInt();
    m_page->setModified(false);
    m_view->setFocus();
    m_view->goToPage(page - 1);
    showPage();
}

void PagesPane::showZoom()
{
    const QString percent = percentText(m_view->zoom());
    m_zoom->setText(m_view->fit() == PagesView::Fit::Width  ? tr("Width")
                    : m_view->fit() == PagesView::Fit::Page ? tr("Page")
                                                            : percent);
    m_zoom->setAccessibleName(tr("Size of the pages: %1").arg(percent));
}

} // namespace quillory
