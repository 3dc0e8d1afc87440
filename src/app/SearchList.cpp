#include "app/SearchList.h"

#include "app/SearchListModel.h"
#include "app/SearchRowDelegate.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

namespace quillory {

namespace {

constexpr int margin = 12;   ///< to the window's edges, in pixels
constexpr int widest = 640;  ///< in pixels
constexpr int mostRows = 16; ///< in sight at once
constexpr int border = 1;    ///< in pixels

bool isMove(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    case Qt::Key_Home: // without Ctrl, these are for what is typed
    case Qt::Key_End:
        return event.modifiers() & Qt::ControlModifier;
    default:
        return false;
    }
}

bool isOwnKey(const QKeyEvent& event)
{
    return isMove(event) || event.key() == Qt::Key_Escape || event.key() == Qt::Key_Return ||
           event.key() == Qt::Key_Enter;
}

} // namespace

SearchList::SearchList(QWidget* window)
    : QFrame(window), m_model(new SearchListModel(this)), m_edit(new QLineEdit(this)),
      m_view(new QListView(this)), m_note(new QLabel(this))
{
    setAutoFillBackground(true);
    setFocusProxy(m_edit);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(border, border, border, border);
    layout->setSpacing(0);
    layout->addWidget(m_edit);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_note);
    m_edit->setFrame(false);
    m_edit->setTextMargins(10, 8, 10, 8);
    m_edit->setClearButtonEnabled(true);
    m_edit->installEventFilter(this);
    m_view->setModel(m_model);
    m_view->setItemDelegate(new SearchRowDelegate(m_view));
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setUniformItemSizes(true);
    m_view->setFocusPolicy(Qt::NoFocus);
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_view->viewport()->installEventFilter(this);
    m_note->setContentsMargins(12, 8, 12, 8);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_note->setBackgroundRole(QPalette::Base);
    m_note->setAutoFillBackground(true);
    hide();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && now->window() == parentWidget()->window() && !isAncestorOf(now))
            close();
    });
    connect(m_edit, &QLineEdit::textEdited, this, [this] {
        m_moved = false;
        filter();
    });
    connect(m_view, &QListView::clicked, this, [this](const QModelIndex& index) {
        if (index == m_view->currentIndex()) // a disabled one is not
            choose();
    });
}

void SearchList::open(const QString& prompt)
{
    setAccessibleName(prompt);
    m_edit->setPlaceholderText(prompt);
    m_edit->setAccessibleName(prompt);
    m_view->setAccessibleName(prompt);
    m_edit->clear();
    setRows({});
    if (!std::exchange(m_isOpen, true)) {
        m_focusBefore = QApplication::focusWidget();
        show();
        raise();
        qApp->installEventFilter(this);
    }
    m_edit->setFocus(Qt::PopupFocusReason);
}

void SearchList::close()
{
    if (!std::exchange(m_isOpen, false))
        return;
    qApp->removeEventFilter(this);
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    hide();
    setRows({});
    if (hadFocus && m_focusBefore)
        m_focusBefore->setFocus();
}

void SearchList::setRows(std::vector<SearchRow> rows, int current)
{
    const int before = m_moved ? currentRow() : -1;
    QStringList texts;
    texts.reserve(qsizetype(rows.size()));
    for (const SearchRow& row : rows)
        texts.append(row.text);
    m_filter.setRows(texts);
    m_model->setRows(std::move(rows));
    m_busy.clear();
    m_first = current;
    filter();
    if (const int place = m_model->placeOf(before); place >= 0)
        makeCurrent(place);
}

void SearchList::setBusy(const QString& text)
{
    m_busy = text;
    showNote();
}

void SearchList::filter()
{
    m_model->show(m_filter.find(m_edit->text()));
    showNote();
    makeCurrent(m_edit->text().isEmpty() ? std::max(0, m_model->placeOf(m_first)) : 0);
}

/// Brings what stands below the line to type in up to date, and the size with it.
void SearchList::showNote()
{
    const bool isEmpty = m_model->rowCount() == 0;
    m_note->setText(!m_busy.isEmpty()      ? m_busy
                    : m_model->size() == 0 ? tr("Nothing to list")
                                           : tr("No match"));
    m_note->setVisible(isEmpty);
    m_view->setVisible(!isEmpty);
    place();
}

void SearchList::makeCurrent(int place)
{
    const QModelIndex index = m_model->index(place);
    if (!index.isValid())
        return;
    m_view->setCurrentIndex(index);
    m_view->scrollTo(index);
    if (QAccessible::isActive() && isVisible()) {
        // The keyboard is with the line to type in, but this is what the keys are about.
        QAccessibleEvent event(m_view, QAccessible::Focus);
        event.setChild(place);
        QAccessible::updateAccessibility(&event);
    }
}

int SearchList::shownCount() const
{
    return m_model->rowCount();
}

int SearchList::currentRow() const
{
    return m_model->rowAt(m_view->currentIndex().row());
}

void SearchList::choose()
{
    const QModelIndex index = m_view->currentIndex();
    const int row = currentRow();
    if (row < 0 || !(m_model->flags(index) & Qt::ItemIsEnabled))
        return;
    close();
    Q_EMIT chosen(row);
}

bool SearchList::press(QKeyEvent& event)
{
    if (event.key() == Qt::Key_Escape) {
        close();
        return true;
    }
    if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        choose();
        return true;
    }
    if (!isMove(event))
        return false;
    m_moved = true;
    const int count = m_model->rowCount();
    const int page =
        std::max(1, m_view->viewport()->height() / std::max(1, m_view->sizeHintForRow(0)) - 1);
    int place = m_view->currentIndex().row();
    switch (event.key()) {
    case Qt::Key_Up:
        place = place > 0 ? place - 1 : count - 1;
        break;
    case Qt::Key_Down:
        place = place + 1 < count ? place + 1 : 0;
        break;
    case Qt::Key_PageUp:
        place = std::max(0, place - page);
        break;
    case Qt::Key_PageDown:
        place = std::min(count - 1, place + page);
        break;
    default:
        place = event.key() == Qt::Key_Home ? 0 : count - 1;
    }
    makeCurrent(place);
    return true;
}

bool SearchList::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (watched == m_edit && press(*static_cast<QKeyEvent*>(event)))
            return true;
        break;
    case QEvent::ShortcutOverride:
        // Whatever the menus make of these keys.
        if (watched == m_edit && isOwnKey(*static_cast<QKeyEvent*>(event)))
            event->accept();
        break;
    case QEvent::Resize:
        if (watched == parentWidget())
            place();
        break;
    case QEvent::MouseButtonPress: {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (widget && widget->window() == window() && widget != this && !isAncestorOf(widget))
            close();
        break;
    }
    case QEvent::WindowDeactivate:
        if (watched == window())
            close();
        break;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}

void SearchList::place()
{
    const QRect room = parentWidget()->rect();
    const int width = std::min(widest, room.width() - 2 * margin);
    int height = m_edit->sizeHint().height() + 2 * border;
    if (m_model->rowCount() > 0)
        height += std::min(m_model->rowCount(), mostRows) * m_view->sizeHintForRow(0);
    else
        height += m_note->sizeHint().height();
    const auto* window = qobject_cast<const QMainWindow*>(parentWidget());
    const int top = (window && window->centralWidget() ? window->centralWidget()->y() : 0) + margin;
    setGeometry((room.width() - width) / 2, top, width,
                std::min(height, room.height() - top - margin));
}

void SearchList::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace quillory
