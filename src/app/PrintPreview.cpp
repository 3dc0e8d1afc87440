#include "app/PrintPreview.h"

#include "app/PageSetupDialog.h"
#include "app/PagesPane.h"
#include "app/PrintPages.h"
#include "app/PrintSetup.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QPointer>
#include <QScreen>
#include <QShortcut>
#include <QToolButton>

namespace quillory {

namespace {

constexpr QSize firstSize(1000, 860); // pixels

} // namespace

PrintPreview::PrintPreview(PrintSetup& setup)
    : m_setup(setup), m_pages(new PagesPane(this)),
      m_lineNumbers(new QCheckBox(tr("Line &numbers"), this)),
      m_colours(new QCheckBox(tr("&Colours"), this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    resize(firstSize.boundedTo(screen()->availableSize() * 0.9));
    build();
}

void PrintPreview::build()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pages);
    QHBoxLayout& bar = m_pages->bar();
    const auto addSwitch = [&](QCheckBox* box, bool PrintSetup::*member) {
        box->setFocusPolicy(Qt::TabFocus);
        bar.addWidget(box);
        bar.addSpacing(6);
        connect(box, &QCheckBox::toggled, this, [this, member](bool isOn) {
            if (std::exchange(m_setup.*member, isOn) != isOn)
                Q_EMIT setupChanged();
        });
    };
    addSwitch(m_lineNumbers, &PrintSetup::lineNumbers);
    addSwitch(m_colours, &PrintSetup::colours);
    using Keys = QList<QKeySequence>;
    m_pages->addTool(tr("Page Setup…"), tr("Paper, orientation and margins"),
                     Keys{Qt::CTRL | Qt::SHIFT | Qt::Key_P}, [this] { askForPage(); });
    m_pages->addTool(tr("Save as PDF…"), tr("Write the pages to a file"), Keys{QKeySequence::Save},
                     [this] { Q_EMIT saveClicked(); });
    QToolButton* print =
        m_pages->addTool(tr("Print…"), tr("Choose a printer"), Keys{Qt::CTRL | Qt::Key_P},
                         [this] { Q_EMIT printClicked(); });
    QFont bold = print->font();
    bold.setBold(true);
    print->setFont(bold);
    m_pages->addTool(tr("Close"), tr("Close the preview"),
                     Keys{Qt::Key_Escape, Qt::CTRL | Qt::Key_W}, [this] { close(); });
    m_pages->view().setFit(PagesView::Fit::Page);
    m_pages->view().setFocus();
}

void PrintPreview::askForPage()
{
    auto* dialog = new PageSetupDialog(m_setup.layout, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        m_setup.layout = dialog->pageLayout();
        m_setup.isLayoutChosen = true;
        Q_EMIT setupChanged();
    });
    dialog->open();
}

void PrintPreview::setJob(const QPPrintableTextView::Job& job, const QString& name)
{
    setWindowTitle(tr("Print Preview — %1").arg(name));
    m_pages->view().setAccessibleName(tr("Pages of %1").arg(name));
    m_lineNumbers->setChecked(m_setup.lineNumbers);
    m_colours->setChecked(m_setup.colours);
    QPPrintableTextView::Job shown = job;
    shown.lineNumbers = m_setup.lineNumbers;
    shown.colours = m_setup.colours;
    m_isComplete = false;
    m_paper = m_setup.layout.fullRect(QPageLayout::Point).size();
    const auto found = [this_ = QPointer(this), number = ++m_number](int pages, bool areAll) {
        QMetaObject::invokeMethod(
            qApp,
            [this_, number, pages, areAll] {
                if (this_ && number == this_->m_number)
                    this_->take(pages, areAll);
            },
            Qt::QueuedConnection);
    };
    m_pages->setRenderer(
        std::make_unique<PageRenderer>(std::make_shared<PrintPages>(shown, m_setup.layout, found)));
}

void PrintPreview::take(int pages, bool areAll)
{
    // What was in sight of an earlier job stays so until its pages are found.
    constexpr int inSight = 3;
    const PagesView& view = m_pages->view();
    if (!areAll && pages < std::min(view.pageCount(), view.place().page + inSight))
        return;
    m_pages->setPageSizes(std::vector<QSizeF>(size_t(pages), m_paper), areAll);
    m_isComplete = areAll;
    if (areAll)
        m_pages->redraw(); // a footer may tell how many there are
}

void PrintPreview::present()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

bool PrintPreview::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        Q_EMIT activated();
    return QWidget::event(event);
}

} // namespace quillory
