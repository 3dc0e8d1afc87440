#include "app/ComparisonWindow.h"

#include "app/ComparisonLink.h"
#include "app/ComparisonSide.h"
#include "app/DocumentWindow.h"
#include "document/Document.h"
#include "foundation/Background.h"
#include "text/WordDiff.h"
#include "view/TextViewWidget.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QToolButton>
#include <algorithm>

namespace quillory {

namespace {

constexpr QSize firstSize(1160, 760); // pixels
constexpr TextOffset longestMarked = TextOffset(32) * 1024;

constexpr QRgb removedColour = qRgb(214, 69, 65);
constexpr QRgb addedColour = qRgb(38, 160, 84);
constexpr QRgb changedColour = qRgb(48, 118, 224);

Colour toColour(const QColor& colour)
{
    return {float(colour.redF()), float(colour.greenF()), float(colour.blueF()),
            float(colour.alphaF())};
}

/// Where line \a line of \a from, and so much of it, stands in the other text.
double mapped(const LineDifferences& differences, LineStretch LineDifference::*from,
              LineStretch LineDifference::*to, double line)
{
    const auto next = std::partition_point(
        differences.begin(), differences.end(), [&](const LineDifference& difference) {
            return double((difference.*from).first.value()) <= line;
        });
    if (next == differences.begin())
        return line;
    const LineStretch& here = (*(next - 1)).*from;
    const LineStretch& there = (*(next - 1)).*to;
    const double beyond = line - double(here.first.value());
    if (beyond < double(here.count))
        return double(there.first.value()) + beyond / double(here.count) * double(there.count);
    return double(there.end().value()) + beyond - double(here.count);
}

} // namespace

ComparisonWindow* ComparisonWindow::compare(DocumentWindow& window, const QString& leftTitle,
                                            const TextSnapshot& left, const QString& rightTitle,
                                            const TextSnapshot& right,
                                            const std::vector<Choice>& choices)
{
    auto* comparison = new ComparisonWindow(window, leftTitle, left, rightTitle, right, choices);
    comparison->setAttribute(Qt::WA_DeleteOnClose);
    for (const QKeySequence& key :
         {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)})
        connect(new QShortcut(key, comparison), &QShortcut::activated, comparison, &QWidget::close);
    comparison->show();
    comparison->activateWindow();
    return comparison;
}

ComparisonWindow::ComparisonWindow(DocumentWindow& window, const QString& leftTitle,
                                   const TextSnapshot& left, const QString& rightTitle,
                                   const TextSnapshot& right, const std::vector<Choice>& choices)
    : m_left(new ComparisonSide(window.environment(), window.document().record().definitionTitle,
                                leftTitle, left, this)),
      m_right(new ComparisonSide(window.environment(), window.document().record().definitionTitle,
                                 rightTitle, right, this)),
      m_link(new ComparisonLink(this)), m_outcome(new QLabel(this)),
      m_previous(new QToolButton(this)), m_next(new QToolButton(this))
{
    setWindowTitle(tr("Compare — %1").arg(window.document().displayName()));
    resize(firstSize.boundedTo(screen()->availableSize() * 0.9));
    connect(&window, &DocumentWindow::closed, this, [this] {
        *m_cancelled = true;
        this->window()->hide();
    });
    connect(&window, &QObject::destroyed, this, [this] { delete this; });
    build(choices);
    const auto follows = [this](ComparisonSide* leader, ComparisonSide* follower) {
        connect(leader, &ComparisonSide::shownLinesChanged, this, [=, this](bool byUser) {
            if (byUser)
                follow(*leader, *follower);
            showDifferences();
        });
        connect(leader, &ComparisonSide::coloursChanged, this, [this] {
            m_left->clearMarks();
            m_right->clearMarks();
            m_marked.assign(m_marked.size(), false);
            showDifferences();
        });
    };
    follows(m_left, m_right);
    follows(m_right, m_left);
    begin();
}

ComparisonWindow::~ComparisonWindow()
{
    *m_cancelled = true;
}

void ComparisonWindow::build(const std::vector<Choice>& choices)
{
    auto* texts = new QHBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(m_left, 1);
    texts->addWidget(m_link);
    texts->addWidget(m_right, 1);

    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(8, 5, 8, 6);
    const auto setUp = [&](QToolButton* button, Qt::ArrowType arrow, const QString& toolTip,
                           const QList<QKeySequence>& keys, int direction) {
        button->setArrowType(arrow);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        button->setToolTip(toolTip);
        button->setAccessibleName(toolTip);
        connect(button, &QToolButton::clicked, this, [this, direction] { step(direction); });
        for (const QKeySequence& key : keys)
            connect(new QShortcut(key, this), &QShortcut::activated, this,
                    [this, direction] { step(direction); });
        bar->addWidget(button);
    };
    setUp(m_previous, Qt::UpArrow, tr("Previous difference (Shift+F7)"),
          {Qt::SHIFT | Qt::Key_F7, Qt::ALT | Qt::Key_Up}, -1);
    setUp(m_next, Qt::DownArrow, tr("Next difference (F7)"), {Qt::Key_F7, Qt::ALT | Qt::Key_Down},
          1);
    m_outcome->setMargin(4);
    bar->addWidget(m_outcome, 1);
    for (const Choice& choice : choices) {
        auto* button = new QPushButton(choice.label, this);
        button->setToolTip(choice.toolTip);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, act = choice.act] {
            this->window()->close();
            act();
        });
        bar->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(texts, 1);
    layout->addLayout(bar);
    m_right->setFocus();
}

void ComparisonWindow::begin()
{
    showOutcome();
    runInBackground(
        this,
        [left = m_left->text(), right = m_right->text(), cancelled = m_cancelled] {
            return lineDifferences(left, right, [&] { return !*cancelled; });
        },
        [this](std::optional<LineDifferences> differences) {
            if (differences)
                take(std::move(*differences));
        });
}

void ComparisonWindow::take(LineDifferences differences)
{
    m_marked.assign(differences.size(), false);
    m_differences = std::move(differences);
    layout()->activate(); // small texts are compared before the window has its size
    const bool isUntouched = m_left->lineAt(0) <= 0 && m_right->lineAt(0) <= 0;
    if (isUntouched && !m_differences->empty())
        goTo(0);
    else
        follow(*m_right, *m_left);
    showOutcome();
    showDifferences();
    Q_EMIT compared();
}

// Going about

/// From the difference that was gone to last, as long as it is in sight, else from what is.
void ComparisonWindow::step(int direction)
{
    if (!m_differences || m_differences->empty())
        return;
    const auto [first, last] = inSight();
    int index = m_current + direction;
    if (m_current < int(first) || m_current >= int(last))
        index = direction > 0 ? int(first) : int(last) - 1;
    goTo(std::clamp(index, 0, int(m_differences->size()) - 1));
}

void ComparisonWindow::goTo(int index)
{
    m_current = index;
    const LineDifference& difference = (*m_differences)[size_t(index)];
    const int height = m_left->view().viewport()->height();
    const int row = m_left->view().textViewport().rowHeight();
    for (auto [side, lines] :
         {std::pair(m_left, difference.left), std::pair(m_right, difference.right)}) {
        const auto most = std::max(difference.left.count, difference.right.count);
        // As much as fits of the longer one, in the middle.
        const qsizetype shown = std::min<qsizetype>(most, height * 2 / 3 / row);
        side->scrollTo(double(lines.first.value()), int((height - shown * row) / 2));
        side->scrollSideways(-int(side->view().textViewport().x()));
        side->editor().setSelectedRange({side->text().lineStart(lines.first), 0});
    }
    showOutcome();
    showDifferences();
}

void ComparisonWindow::follow(const ComparisonSide& leader, ComparisonSide& follower)
{
    if (!m_differences)
        return;
    const bool isLeft = &leader == m_left;
    const auto from = isLeft ? &LineDifference::left : &LineDifference::right;
    const auto to = isLeft ? &LineDifference::right : &LineDifference::left;
    const int middle = leader.view().viewport()->height() / 2;
    follower.scrollTo(mapped(*m_differences, from, to, leader.lineAt(middle)), middle);
    const double x = leader.view().textViewport().x();
    const int dx = int(x - follower.view().textViewport().x());
    if (dx != 0)
        follower.scrollSideways(dx);
}

/// The differences of which something is in sight on either side: from the first to before the
/// second.
std::pair<size_t, size_t> ComparisonWindow::inSight() const
{
    const LineStretch left = m_left->visibleLines();
    const LineStretch right = m_right->visibleLines();
    const auto begin = m_differences->begin();
    const auto first = std::partition_point(begin, m_differences->end(), [&](const auto& d) {
        return d.left.end().value() < left.first.value() &&
               d.right.end().value() < right.first.value();
    });
    const auto last = std::partition_point(first, m_differences->end(), [&](const auto& d) {
        return d.left.first.value() <= left.end().value() ||
               d.right.first.value() <= right.end().value();
    });
    return {size_t(first - begin), size_t(last - begin)};
}

// What is seen

QColor ComparisonWindow::colourOf(const LineDifference& difference, bool isCurrent) const
{
    QColor colour(difference.left.count == 0    ? addedColour
                  : difference.right.count == 0 ? removedColour
                                                : changedColour);
    const float strength = m_right->isDark() ? 1.3F : 1.0F;
    colour.setAlphaF((isCurrent ? 0.26F : 0.15F) * strength);
    return colour;
}

void ComparisonWindow::showDifferences()
{
    if (!m_differences)
        return;
    const auto [first, last] = inSight();
    std::vector<LineBand> left;
    std::vector<LineBand> right;
    std::vector<ComparisonLink::Band> bands;
    const int above = m_left->textArea().top() - m_link->y();
    for (size_t i = first; i < last; ++i) {
        const LineDifference& difference = (*m_differences)[i];
        const QColor colour = colourOf(difference, int(i) == m_current);
        if (difference.left.count > 0)
            left.push_back({rangeOf(m_left->text(), difference.left), toColour(colour)});
        if (difference.right.count > 0)
            right.push_back({rangeOf(m_right->text(), difference.right), toColour(colour)});
        const auto y = [&](const ComparisonSide& side, LineIndex line) {
            return above + side.yOf(double(line.value()));
        };
        bands.push_back({y(*m_left, difference.left.first), y(*m_left, difference.left.end()),
                         y(*m_right, difference.right.first), y(*m_right, difference.right.end()),
                         colour});
        markWithin(i);
    }
    m_left->setBands(left);
    m_right->setBands(right);
    m_link->setBands(bands, above, m_right->view().colours().background);
}

void ComparisonWindow::markWithin(size_t index)
{
    if (m_marked[index])
        return;
    m_marked[index] = true;
    const LineDifference& difference = (*m_differences)[index];
    const TextRange left = rangeOf(m_left->text(), difference.left);
    const TextRange right = rangeOf(m_right->text(), difference.right);
    if (left.isEmpty() || right.isEmpty() || left.length + right.length > longestMarked)
        return;
    const QString ours = m_left->text().string(left);
    const QString theirs = m_right->text().string(right);
    const WordDifferences found = wordDifferences(ours, theirs);
    const auto mark = [&](ComparisonSide& side, TextOffset start,
                          const std::vector<TextRange>& ranges, QRgb rgb) {
        QColor colour(rgb);
        colour.setAlphaF(0.30F);
        for (const TextRange& range : ranges)
            side.mark({start + range.location, range.length}, toColour(colour));
    };
    mark(*m_left, left.location, found.left, removedColour);
    mark(*m_right, right.location, found.right, addedColour);
}

void ComparisonWindow::showOutcome()
{
    m_outcome->setText(outcome());
    const int count = m_differences ? int(m_differences->size()) : 0;
    m_previous->setEnabled(count > 0 && m_current != 0);
    m_next->setEnabled(count > 0 && m_current != count - 1);
}

QString ComparisonWindow::outcome() const
{
    if (!m_differences)
        return tr("Comparing…");
    const QLocale locale;
    const QString count = locale.toString(qlonglong(m_differences->size()));
    if (m_differences->empty())
        return tr("No differences");
    if (m_current >= 0)
        return tr("Difference %1 of %2").arg(locale.toString(m_current + 1), count);
    return m_differences->size() == 1 ? tr("1 difference") : tr("%1 differences").arg(count);
}

} // namespace quillory
