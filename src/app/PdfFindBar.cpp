#include "app/PdfFindBar.h"

#include "app/FindField.h"
#include "app/PagesView.h"
#include "app/TintedIcon.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QToolButton>

namespace quillory {

PdfFindBar::PdfFindBar(PagesView& view, QWidget* parent)
    : QWidget(parent), m_view(view), m_field(new FindField(tr("Find in the PDF"), this)),
      m_state(new QLabel(this))
{
    hide();
    connect(m_field, &FindField::findNext, this, &PdfFindBar::findNext);
    const int width = fontMetrics().horizontalAdvance(tr("%1 of %2").arg(8888888).arg(8888888));
    m_state->setMinimumWidth(width);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 3, 6, 3);
    layout->setSpacing(4);
    layout->addWidget(m_field, 1);
    const auto addButton = [&](const QString& icon, const QString& toolTip, auto act) {
        auto* button = new QToolButton(this);
        button->setIcon(tintedIcon(icon));
        button->setToolTip(toolTip);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QToolButton::clicked, this, act);
        layout->addWidget(button);
        return button;
    };
    addButton(QStringLiteral("up"), tr("Find previous (Shift+F3)"), [this] { findNext(-1); });
    addButton(QStringLiteral("down"), tr("Find next (F3)"), [this] { findNext(); });
    layout->addWidget(m_state);
    layout->addStretch(1);
    auto* end = addButton(QString(), tr("Close (Esc)"), [this] { close(); });
    end->setText(QStringLiteral("×"));
    connect(m_field, &QLineEdit::textChanged, this, [this] {
        m_firstPage = m_view.currentPage();
        m_shallReveal = true;
        search();
    });
    connect(&m_search, &PdfSearch::changed, this, &PdfFindBar::chooseFirst);
    connect(&m_search, &PdfSearch::located, this, &PdfFindBar::showMarks);
    connect(&m_view, &PagesView::scrolled, this, &PdfFindBar::locate);
}

void PdfFindBar::setFile(const std::shared_ptr<PdfFile>& file)
{
    m_file = file;
    m_firstPage = m_view.currentPage();
    m_shallReveal = false;
    search();
}

void PdfFindBar::open()
{
    QWidget::show();
    m_field->setFocus();
    m_field->selectAll();
    m_firstPage = m_view.currentPage();
    search();
}

void PdfFindBar::close()
{
    hide();
    m_search.start(nullptr, {});
    m_view.setFocus();
}

QString PdfFindBar::state() const
{
    return m_state->text();
}

void PdfFindBar::search()
{
    m_current = -1;
    if (isHidden() || !m_file)
        m_search.start(nullptr, {});
    else
        m_search.start(m_file, m_field->text());
}

void PdfFindBar::findNext(int step)
{
    if (isHidden() || m_field->text().isEmpty()) {
        open();
        return;
    }
    const auto count = int(m_search.hits().size());
    if (count > 0)
        goTo(m_current < 0 ? (step > 0 ? 0 : count - 1) : (m_current + step + count) % count);
}

/// The first place from the page on that was in sight becomes the current one.
void PdfFindBar::chooseFirst()
{
    const std::vector<PdfSearch::Hit>& hits = m_search.hits();
    if (m_current < 0 && !hits.empty()) {
        const auto first = std::find_if(
            hits.begin(), hits.end(), [this](const auto& hit) { return hit.page >= m_firstPage; });
        if (first != hits.end() || !m_search.isRunning())
            m_current = first == hits.end() ? 0 : int(first - hits.begin());
        if (m_current >= 0 && m_shallReveal)
            goTo(m_current);
    }
    locate();
    showMarks();
}

void PdfFindBar::goTo(int hit)
{
    m_current = hit;
    m_shallReveal = true;
    m_search.locate(m_search.hits()[size_t(hit)].page);
    showMarks();
}

void PdfFindBar::locate()
{
    const auto [first, last] = m_view.pagesInSight();
    for (int page = first; page <= last; ++page)
        m_search.locate(page);
}

void PdfFindBar::showMarks()
{
    std::vector<PageMarks> marks = m_search.marks();
    const int current = m_search.markOf(m_current);
    if (current >= 0 && std::exchange(m_shallReveal, false)) {
        const PageMarks& mark = marks[size_t(current)];
        m_view.reveal(mark.page, mark.rects.empty() ? QRectF(0, 0, 1, 1) : mark.rects.front());
    }
    m_view.setMarks(std::move(marks), current);
    showState();
}

void PdfFindBar::showState()
{
    const std::vector<PdfSearch::Hit>& hits = m_search.hits();
    const QString count = QLocale().toString(int(hits.size())) +
                          (m_search.isRunning() ? QStringLiteral("…") : QString());
    m_state->setText(isHidden() || m_field->text().isEmpty() ? QString()
                     : !hits.empty()        ? tr("%1 of %2").arg(m_current + 1).arg(count)
                     : m_search.isRunning() ? tr("Searching…")
                                            : tr("Not found"));
}

} // namespace quillory
