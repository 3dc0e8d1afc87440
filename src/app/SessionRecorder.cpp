#include "app/SessionRecorder.h"

#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/RereadFlow.h"
#include "app/WindowPlace.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QEvent>

namespace quillory {

SessionRecorder::SessionRecorder(DocumentController& controller) : m_controller(controller)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SessionRecorder::changed);
    connect(&controller, &DocumentController::windowOpened, this, &SessionRecorder::follow);
    for (DocumentWindow* window : controller.windows())
        follow(window);
}

void SessionRecorder::follow(DocumentWindow* window)
{
    const auto change = [this, window] { noteChange(window); };
    window->installEventFilter(this);
    connect(window, &DocumentWindow::closed, this, &SessionRecorder::noteClosed);
    const auto move = [this, window] { noteChange(window, delayOfPlaces); };
    connect(&window->view(), &TextViewWidget::visibleRangeChanged, this, move);
    Document& document = window->document();
    connect(&document.textView(), &QPTextView::selectionDidChange, this, move);
    connect(&document, &Document::recordChanged, this, change);
    connect(&document, &Document::editedChanged, this, change);
    connect(&document.journal(), &EditJournal::begun, this, change);
    // The one that opens in the background lies behind those that are there.
    if (window->testAttribute(Qt::WA_ShowWithoutActivating) && !m_order.empty())
        m_order.insert(m_order.begin() + 1, window);
    else
        m_order.insert(m_order.begin(), window);
    noteChange(window);
}

bool SessionRecorder::eventFilter(QObject* watched, QEvent* event)
{
    auto* window = static_cast<DocumentWindow*>(watched);
    switch (event->type()) {
    case QEvent::WindowActivate:
        if (std::erase(m_order, window) > 0)
            m_order.insert(m_order.begin(), window);
        noteChange(window);
        break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
        noteChange(window);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void SessionRecorder::noteChange(DocumentWindow* window, std::chrono::milliseconds within)
{
    m_changed.insert(window);
    tellWithin(within);
}

void SessionRecorder::tellWithin(std::chrono::milliseconds time)
{
    if (!m_timer.isActive() || m_timer.remainingTimeAsDuration() > time)
        m_timer.start(time);
}

void SessionRecorder::noteClosed(DocumentWindow* window)
{
    if (!m_letGo.remove(window) && m_keepsClosed) {
        m_closed.push_back(look(window));
        // What is not kept was given up, and the form with it.
        if (window->document().isDocumentEdited() && m_closed.back().journal.isEmpty())
            m_closed.back().state.clear();
    }
    window->removeEventFilter(this);
    window->disconnect(this);
    window->document().disconnect(this);
    window->journal().disconnect(this);
    window->document().textView().disconnect(this);
    window->view().disconnect(this);
    std::erase(m_order, window);
    m_known.remove(window);
    m_changed.remove(window);
    tellWithin(delay);
}

const SavedWindow& SessionRecorder::look(DocumentWindow* window)
{
    SavedWindow& known = m_known[window];
    // What is to be seen of a text that is still being read is not what it will be.
    const bool isComing = window->document().isLoading() || window->rereading().isReading();
    if (isComing && known.isWorthwhile())
        return known;
    if (m_changed.remove(window))
        known = placeOf(*window, known);
    return known;
}

std::vector<SavedWindow> SessionRecorder::session(const Exception& isLeftOut)
{
    m_timer.stop();
    std::vector<SavedWindow> windows;
    for (DocumentWindow* window : m_order) {
        if (isLeftOut && isLeftOut(*window))
            continue;
        const SavedWindow& place = look(window);
        if (place.isWorthwhile())
            windows.push_back(place);
    }
    std::copy_if(m_closed.begin(), m_closed.end(), std::back_inserter(windows),
                 [](const SavedWindow& window) { return window.isWorthwhile(); });
    return windows;
}

void SessionRecorder::setKeepsClosed(bool keeps)
{
    m_keepsClosed = keeps;
    m_letGo.clear();
    if (!keeps)
        m_closed.clear();
}

} // namespace quillory
