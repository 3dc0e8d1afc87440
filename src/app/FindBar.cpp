#include "app/FindBar.h"

#include "app/DocumentWindow.h"
#include "app/FindField.h"
#include "app/TintedIcon.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QRegularExpression>
#include <QToolButton>

namespace quillory {

namespace {

using Direction = FindSession::Direction;

constexpr TextOffset longestNeedle = 1000; ///< code units of a selection that is looked for

QWidget* newRow(QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    return row;
}

} // namespace

FindBar& FindBar::of(DocumentWindow& window)
{
    QWidget* content = window.centralWidget();
    if (auto* bar = content->findChild<FindBar*>({}, Qt::FindDirectChildrenOnly))
        return *bar;
    auto* bar = new FindBar(window);
    auto* layout = qobject_cast<QBoxLayout*>(content->layout());
    layout->insertWidget(layout->indexOf(&window.view()) + 1, bar);
    return *bar;
}

FindBar::FindBar(DocumentWindow& window)
    : QWidget(window.centralWidget()), m_window(window), m_session(window.document().textView()),
      m_field(new FindField(tr("Find"), this)), m_findRow(newRow(this)),
      m_replacement(new FindField(tr("Replace by"), this)), m_replaceRow(newRow(this)),
      m_state(new QLabel(m_findRow))
{
    hide();
    build();
    TextViewWidget& view = window.view();
    view.setFound(&m_session.matches());
    connect(&m_session, &FindSession::marksChanged, &view, &TextViewWidget::marksChanged);
    connect(&m_session, &FindSession::changed, this, &FindBar::showState);
    connect(&m_session, &FindSession::selected, this, &FindBar::reveal);
    connect(&m_session, &FindSession::replacedAll, this, [this](qsizetype count) {
        m_replaced = tr("%Ln replaced", nullptr, int(count));
        m_state->setText(m_replaced);
    });
    connect(m_field, &QLineEdit::textChanged, this, &FindBar::search);
    connect(m_field, &FindField::findNext, this,
            [this](int step) { findNext(step > 0 ? Direction::Forward : Direction::Backward); });
    connect(m_replacement, &FindField::findNext, this, [this](int step) {
        if (step > 0)
            m_session.replace(m_replacement->text());
        else
            findNext(Direction::Backward);
    });
}

QToolButton* FindBar::addButton(const QString& icon, const QString& label, const QString& toolTip,
                                const std::function<void()>& act, QWidget* row)
{
    auto* button = new QToolButton(row);
    if (!icon.isEmpty())
        button->setIcon(tintedIcon(icon));
    button->setText(label);
    button->setToolTip(toolTip);
    button->setAccessibleName(label.size() > 1 ? label : toolTip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QToolButton::clicked, this, act);
    row->layout()->addWidget(button);
    return button;
}

QToolButton* FindBar::addSwitch(const QString& label, const QString& name)
{
    QToolButton* button = addButton(
        {}, label, name, [this] { search(); }, m_findRow);
    button->setAccessibleName(name);
    button->setCheckable(true);
    return button;
}

void FindBar::build()
{
    const int width = fontMetrics().horizontalAdvance(tr("%1 of %2").arg(8888888).arg(8888888));
    m_state->setMinimumWidth(width);
    m_case = addSwitch(QStringLiteral("Aa"), tr("Match case"));
    m_words = addSwitch(QStringLiteral("“ ”"), tr("Whole words"));
    m_regex = addSwitch(QStringLiteral(".*"), tr("Regular expression"));
    addButton(
        QStringLiteral("up"), {}, tr("Find previous (Shift+F3)"),
        [this] { findNext(Direction::Backward); }, m_findRow);
    addButton(
        QStringLiteral("down"), {}, tr("Find next (F3)"), [this] { findNext(Direction::Forward); },
        m_findRow);
    m_findRow->layout()->addWidget(m_state);
    qobject_cast<QHBoxLayout*>(m_findRow->layout())->addStretch(1);
    addButton(
        {}, QStringLiteral("×"), tr("Close (Esc)"), [this] { close(); }, m_findRow);

    addButton(
        {}, tr("Replace"), tr("Replace this place and find the next (Return)"),
        [this] { m_session.replace(m_replacement->text()); }, m_replaceRow);
    addButton(
        {}, tr("Replace All"), tr("Replace all places, as one step"),
        [this] { m_session.replaceAll(m_replacement->text()); }, m_replaceRow);
    qobject_cast<QHBoxLayout*>(m_replaceRow->layout())->addStretch(1);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(8, 3, 6, 3);
    layout->setSpacing(4);
    layout->addWidget(m_field, 0, 0);
    layout->addWidget(m_findRow, 0, 1);
    layout->addWidget(m_replacement, 1, 0);
    layout->addWidget(m_replaceRow, 1, 1);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
}

void FindBar::open(bool replaces)
{
    takeSelection();
    present(replaces);
    // What is to be replaced by is left to be said where what is found is known.
    FindField* field = replaces && m_field->hasFocus() ? m_replacement : m_field;
    field->setFocus();
    field->selectAll();
}

void FindBar::present(bool replaces)
{
    m_replacement->setVisible(replaces);
    m_replaceRow->setVisible(replaces);
    show();
    search();
}

void FindBar::close()
{
    hide();
    m_session.clear();
    m_window.view().setFocus();
}

/// False where nothing is selected, or more than one looks for.
bool FindBar::takeSelection()
{
    const TextSnapshot& text = m_window.document().completeString();
    const TextRange selection = m_window.document().textView().selectedRange();
    if (selection.isEmpty() || selection.length > longestNeedle ||
        text.lineAt(selection.location).value() != text.lineAt(selection.end()).value())
        return false;
    const QString selected = text.string(selection);
    m_field->setText(m_regex->isChecked() ? QRegularExpression::escape(selected) : selected);
    return true;
}

void FindBar::findNext(FindSession::Direction direction)
{
    if (m_field->text().isEmpty()) {
        open(false);
        return;
    }
    if (isHidden())
        present(false);
    m_session.findNext(direction);
}

void FindBar::useSelection()
{
    if (!takeSelection())
        return;
    present(isVisible() && m_replacement->isVisible());
}

void FindBar::selectAll()
{
    if (isHidden() && takeSelection())
        useSelection();
    m_session.selectAll();
    m_window.view().setFocus();
}

void FindBar::search()
{
    m_replaced.clear();
    if (!isHidden())
        m_session.setQuery(
            {m_field->text(), m_regex->isChecked(), m_case->isChecked(), m_words->isChecked()});
}

void FindBar::reveal(TextRange place)
{
    TextViewWidget& view = m_window.view();
    const TextRange seen = view.visibleRange();
    if (place.location < seen.location || place.end() > seen.end())
        view.centerOn(place.location);
    view.ensureVisible(place.end());
    view.ensureVisible(place.location);
    view.showFindIndicatorForRange(place);
}

QString FindBar::state() const
{
    return m_state->text();
}

void FindBar::showState()
{
    const size_t found = m_session.matches().all().size();
    QString count = QLocale().toString(qsizetype(found));
    if (m_session.isSearching() || m_session.isCutShort())
        count += m_session.isCutShort() ? u"+"_qs : u"…"_qs;
    const std::optional<size_t> current = m_session.current();
    m_state->setText(!m_session.error().isEmpty()       ? m_session.error()
                     : m_session.query().text.isEmpty() ? QString()
                     : found > 0 && current
                         ? tr("%1 of %2").arg(QLocale().toString(qsizetype(*current) + 1), count)
                     : found > 0               ? tr("%1 found").arg(count)
                     : !m_replaced.isEmpty()   ? m_replaced
                     : m_session.isSearching() ? tr("Searching…")
                                               : tr("Not found"));
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

} // namespace quillory
