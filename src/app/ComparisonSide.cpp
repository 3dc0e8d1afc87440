#include "app/ComparisonSide.h"

#include "app/ViewAppearance.h"
#include "document/DocumentEnvironment.h"
#include "foundation/Background.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "view/MarkerLineNumberView.h"
#include "view/TextViewWidget.h"

#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>
#include <cmath>

namespace quillory {

namespace {

constexpr TextOffset quickLength = 1 << 20; // freed without a noticeable wait

} // namespace

ComparisonSide::ComparisonSide(const DocumentEnvironment& environment,
                               const QString& definitionTitle, const QString& title,
                               const TextSnapshot& text, QWidget* parent)
    : QWidget(parent), m_colouring(m_storage, m_overlay, environment.folders, environment.defaults),
      m_view(new TextViewWidget(m_editor, m_overlay, this,
                                ViewAppearance::fontOf(environment.defaults))),
      m_appearance(new ViewAppearance(*m_view, environment, m_colouring))
{
    m_appearance->setParent(this);
    connect(&m_storage, &TextStorage::edited, &m_overlay, &Overlay::textChanged);
    m_storage.replaceCharactersInRange({}, text);
    m_editor.setEditable(false);
    build(title);
    m_colouring.setVisibleRangeSource([this] { return m_view->visibleRange(); });
    m_colouring.setDefinitionWithTitle(definitionTitle);
    applyPreferences();
    connect(&environment.notifications, &NotificationCenter::posted, this,
            [this](const QString& name) {
                if (name == notifications::preferencesDidChange)
                    applyPreferences();
            });
    connect(m_view, &TextViewWidget::visibleRangeChanged, this, [this] {
        m_colouring.pageRecolour();
        const TextViewport& viewport = m_view->textViewport();
        const double x = viewport.x();
        const qint64 y = m_view->textViewport().y();
        const bool isOwn = y == m_ownY && x == m_ownX;
        m_ownX = x;
        m_ownY = y;
        Q_EMIT shownLinesChanged(!isOwn);
    });
}

ComparisonSide::~ComparisonSide()
{
    delete m_view; // it looks at the text to the last
    TextSnapshot text = m_storage.snapshot();
    m_storage.replaceCharactersInRange(text.range(), TextSnapshot());
    if (text.length() > quickLength)
        releaseInBackground(std::move(text));
}

void ComparisonSide::build(const QString& title)
{
    auto* label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setText(title);
    label->setToolTip(title);
    label->setMargin(6);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setAccessibleName(title);
    auto* ruler = new MarkerLineNumberView(*m_view);
    connect(m_view, &TextViewWidget::coloursChanged, this, [this, ruler] {
        ruler->setLook(LineNumberLook::beside(m_view->colours()));
        Q_EMIT coloursChanged();
    });
    ruler->setLook(LineNumberLook::beside(m_view->colours()));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(label);
    layout->addWidget(m_view, 1);
    setFocusProxy(m_view);
    fillMenu();
}

void ComparisonSide::fillMenu()
{
    const auto menu = std::make_shared<QMenu>();
    const auto add = [&](const QString& text, QKeySequence::StandardKey key, auto act) {
        QAction* action = menu->addAction(text);
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, act);
    };
    add(tr("&Copy"), QKeySequence::Copy, [this] { m_view->commands().copy(); });
    add(tr("Select &All"), QKeySequence::SelectAll, [this] { m_view->commands().selectAll(); });
    m_editor.setContextMenu(menu);
}

void ComparisonSide::applyPreferences()
{
    m_appearance->apply();
    m_view->setWrapLines(false);
    m_colouring.prepareColoring();
    m_colouring.pageRecolour();
}

bool ComparisonSide::isDark() const
{
    const TextViewColours& colours = m_view->colours();
    return colours.text.lightness() > colours.background.lightness();
}

// Every line is one row, and as high as all others.

double ComparisonSide::lineAt(int y) const
{
    TextViewport& viewport = m_view->textViewport();
    const TextViewport::VisibleRow& top = viewport.rows().front();
    return double(top.row.line.value()) + double(y - top.y) / viewport.rowHeight();
}

int ComparisonSide::yOf(double line) const
{
    TextViewport& viewport = m_view->textViewport();
    const TextViewport::VisibleRow& top = viewport.rows().front();
    // Far out of sight it matters only on which side.
    constexpr double far = 1 << 20;
    const double y = (line - double(top.row.line.value())) * viewport.rowHeight() + top.y;
    return int(std::lround(std::clamp(y, -far, far)));
}

void ComparisonSide::scrollTo(double line, int y)
{
    TextViewport& viewport = m_view->textViewport();
    const TextViewport::VisibleRow& top = viewport.rows().front();
    const double pixels = (line - double(top.row.line.value())) * viewport.rowHeight() + top.y - y;
    const qint64 before = viewport.y();
    viewport.scrollBy(std::llround(pixels));
    m_ownY = viewport.y();
    if (m_ownY != before)
        m_view->scrollBy(0, 0); // says so
}

void ComparisonSide::scrollSideways(int pixels)
{
    m_view->scrollBy(pixels, 0);
    m_ownX = m_view->textViewport().x();
}

LineStretch ComparisonSide::visibleLines() const
{
    const auto& rows = m_view->textViewport().rows();
    const LineIndex first = rows.front().row.line;
    return {first, rows.back().row.line - first + 1};
}

QRect ComparisonSide::textArea() const
{
    return {m_view->viewport()->mapTo(parentWidget(), QPoint(0, 0)), m_view->viewport()->size()};
}

} // namespace quillory
