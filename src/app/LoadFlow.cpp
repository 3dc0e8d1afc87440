#include "app/LoadFlow.h"

#include "app/DocumentLoader.h"
#include "app/ProgressBar.h"
#include "document/Document.h"

#include <QKeyEvent>
#include <QWidget>

namespace quillory {

LoadFlow::LoadFlow(Document& document, ProgressBar& bar, QWidget& window)
    : m_document(document), m_bar(bar), m_window(window)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        m_bar.begin({tr("Reading “%1”; it can be edited afterwards"), m_document.displayName(),
                     tr("Stop reading and close the file (Esc)")});
    });
    connect(&bar, &ProgressBar::cancelClicked, this, &LoadFlow::cancel);
}

LoadFlow::~LoadFlow()
{
    stop();
}

void LoadFlow::start(const std::shared_ptr<GradualRead>& reading, DocumentLoader& loader)
{
    m_cancelled = loader.goOn(
        reading, this, [this](const GradualRead::Progress& progress) { take(progress); },
        [this](const GradualRead::Outcome& outcome) { finish(outcome); });
    m_patience.start();
    m_window.installEventFilter(this);
}

/// What was read but not taken is dropped.
void LoadFlow::stop()
{
    if (!m_cancelled)
        return;
    *m_cancelled = true;
    m_cancelled.reset();
    m_patience.stop();
    m_window.removeEventFilter(this);
}

void LoadFlow::cancel()
{
    if (!m_cancelled)
        return;
    stop();
    Q_EMIT cancelled();
}

void LoadFlow::take(const GradualRead::Progress& progress)
{
    m_document.takeMore(progress.text);
    m_bar.setShare(progress.share);
    goOn();
}

void LoadFlow::finish(const GradualRead::Outcome& outcome)
{
    stop();
    if (!outcome.result.answer) {
        Q_EMIT failed(outcome.result.message);
        return;
    }
    m_bar.end();
    m_document.finishLoading(outcome);
    goOn();
    Q_EMIT loaded();
}

bool LoadFlow::postpones(qint64 number, const std::function<void()>& go)
{
    // The last line may go on.
    const bool isThere =
        !m_document.isLoading() || number < m_document.completeString().lineCount();
    m_go = isThere ? nullptr : go;
    return !isThere;
}

void LoadFlow::goOn()
{
    if (const auto go = std::exchange(m_go, nullptr))
        go();
}

/// Sees the keys that nothing in the window had a use for.
bool LoadFlow::eventFilter(QObject* watched, QEvent* event)
{
    const bool isEscape = event->type() == QEvent::KeyPress &&
                          static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (watched != &m_window || !isEscape)
        return QObject::eventFilter(watched, event);
    cancel();
    return true;
}

} // namespace quillory
