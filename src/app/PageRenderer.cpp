#include "app/PageRenderer.h"

#include <QCoreApplication>
#include <QMutex>
#include <QPointer>
#include <QThreadPool>
#include <QWaitCondition>
#include <algorithm>
#include <array>
#include <optional>

namespace quillory {

namespace {

/// Each of its threads belongs to one renderer for as long as that lives, and waits most of the
/// time.
QThreadPool& renderingPool()
{
    constexpr int unlimited = 1000;
    static QThreadPool pool;
    [[maybe_unused]] static const bool isAwaited = [] {
        pool.setMaxThreadCount(unlimited);
        qAddPostRoutine([] { pool.waitForDone(); });
        return true;
    }();
    return pool;
}

} // namespace

struct PageRenderer::State
{
    std::shared_ptr<PageSource> source;
    QPointer<PageRenderer> renderer; ///< to be looked at on its own thread only

    QMutex mutex; ///< over what follows
    QWaitCondition changed;
    bool isStopped = false;
    std::array<std::vector<PageTile>, 2> wanted; ///< by purpose, the first one last
    std::optional<PageTile> inHand;
};

PageRenderer::PageRenderer(std::shared_ptr<PageSource> source, QObject* parent)
    : QObject(parent), m_state(std::make_shared<State>())
{
    m_state->source = std::move(source);
    m_state->renderer = this;
    renderingPool().start([state = m_state] { work(*state); });
}

PageRenderer::~PageRenderer()
{
    const QMutexLocker lock(&m_state->mutex);
    m_state->isStopped = true;
    m_state->changed.wakeAll();
}

void PageRenderer::request(Purpose purpose, std::vector<PageTile> tiles)
{
    const QMutexLocker lock(&m_state->mutex);
    if (m_state->inHand)
        std::erase(tiles, *m_state->inHand);
    std::reverse(tiles.begin(), tiles.end());
    m_state->wanted[purpose] = std::move(tiles);
    m_state->changed.wakeAll();
}

void PageRenderer::work(State& state)
{
    state.source->prepare([&state] { return renderWanted(state); });
    while (renderWanted(state)) {
        const QMutexLocker lock(&state.mutex);
        if (!state.isStopped && state.wanted[Reading].empty() && state.wanted[Overview].empty())
            state.changed.wait(&state.mutex);
    }
    state.source.reset();
}

/// Draws until nothing is wanted any more; false when it was stopped.
bool PageRenderer::renderWanted(State& state)
{
    while (true) {
        {
            const QMutexLocker lock(&state.mutex);
            state.inHand.reset();
            auto& wanted =
                state.wanted[Reading].empty() ? state.wanted[Overview] : state.wanted[Reading];
            if (state.isStopped || wanted.empty())
                return !state.isStopped;
            state.inHand = wanted.back();
            wanted.pop_back();
        }
        const PageTile tile = *state.inHand;
        QMetaObject::invokeMethod(
            qApp,
            [renderer = state.renderer, tile,
             image = state.source->render(tile.page, tile.scale, tile.part)] {
                if (renderer)
                    Q_EMIT renderer->rendered(tile, image);
            },
            Qt::QueuedConnection);
    }
}

} // namespace quillory
