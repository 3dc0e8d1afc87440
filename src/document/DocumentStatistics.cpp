#include "document/DocumentStatistics.h"

#include "editing/QPTextView.h"
#include "foundation/Background.h"

#include <QElapsedTimer>

namespace quillory {

namespace {

constexpr int quickTime = 4;     ///< milliseconds that counting at once may take
constexpr int tellingTime = 100; ///< milliseconds between two words of how far it is

} // namespace

DocumentStatistics::DocumentStatistics(QPTextView& textView, QObject* parent)
    : QObject(parent), m_textView(textView)
{}

DocumentStatistics::~DocumentStatistics()
{
    cancel();
}

void DocumentStatistics::generateStatistics()
{
    cancel();
    std::vector<TextRange> selected;
    for (const Selection& selection : m_textView.selections()) {
        if (!selection.isCaret())
            selected.push_back(selection.range());
    }
    const auto count = std::make_shared<StatisticsCount>(m_textView.string(), std::move(selected));
    QElapsedTimer time;
    time.start();
    bool isDone = false;
    while (!isDone && time.elapsed() < quickTime)
        isDone = !count->step();
    const Progress soFar = progressOf(*count);
    if (!isDone) {
        m_cancelled = std::make_shared<std::atomic_bool>(false);
        runInBackground(
            this,
            [count, cancelled = m_cancelled, guard = QPointer(this)] {
                QElapsedTimer sinceTold;
                sinceTold.start();
                while (!*cancelled && count->step()) {
                    if (sinceTold.elapsed() < tellingTime)
                        continue;
                    sinceTold.start();
                    const auto tell = [guard, cancelled, progress = progressOf(*count)] {
                        if (guard && !*cancelled)
                            guard->take(progress);
                    };
                    QMetaObject::invokeMethod(qApp, tell, Qt::QueuedConnection);
                }
                return progressOf(*count);
            },
            [this, cancelled = m_cancelled](const Progress& progress) {
                if (*cancelled)
                    return;
                m_cancelled.reset();
                take(progress);
            });
    }
    take(soFar);
}

void DocumentStatistics::cancel()
{
    if (m_cancelled)
        *m_cancelled = true;
    m_cancelled.reset();
}

void DocumentStatistics::take(const Progress& progress)
{
    m_progress = progress;
    Q_EMIT changed();
}

} // namespace quillory
