#include "app/PageRenderer.h"

#include "foundation/Background.h"

#include <QMutex>
#include <array>
#include <optional>

namespace quillory {

struct PageRenderer::State
{
    std::shared_ptr<PageSource> source;
    QPointer<PageRenderer> renderer; ///< to be looked at on its own thread only
    bool isPrepared = false;         ///< belongs to the thread that draws

    QMutex mutex; ///< over what follows
    bool isRunning = false;
    bool isStopped = false;
    std::array<std::vector<PageTile>, 2> wanted; ///< by purpose, the first one last
    std::optional<PageTile> inHand;
};

PageRenderer::PageRenderer(std::shared_ptr<PageSource> source, QObject* parent)
    : QObject(parent), m_state(std::make_shared<State>())
{
    m_state->source = std::move(source);
    m_state->renderer = this;
    startIfIdle(m_state);
}

PageRenderer::~PageRenderer()
{
    {
        const QMutexLocker lock(&m_state->mutex);
        m_state->isStopped = true;
    }
    releaseInBackground(std::move(m_state));
}

void PageRenderer::request(Purpose purpose, std::vector<PageTile> tiles)
{
    {
        const QMutexLocker lock(&m_state->mutex);
        if (m_state->inHand)
            std::erase(tiles, *m_state->inHand);
        std::reverse(tiles.begin(), tiles.end());
        m_state->wanted[purpose] = std::move(tiles);
    }
    startIfIdle(m_state);
}

void PageRenderer::startIfIdle(const std::shared_ptr<State>& state)
{
    const QMutexLocker lock(&state->mutex);
    if (std::exchange(state->isRunning, true))
        return;
    backgroundPool().start([state] { work(state); });
}

void PageRenderer::work(const std::shared_ptr<State>& state)
{
    if (!state->isPrepared) {
        // Finding the pages of a long text may take many seconds, which others need not wait for.
        const WaitingInPool waiting;
        state->isPrepared = true;
        state->source->prepare([&state] { return renderWanted(*state, false); });
    }
    renderWanted(*state, true);
}

/// Draws until nothing is wanted any more; false when it was stopped.
bool PageRenderer::renderWanted(State& state, bool isLast)
{
    while (true) {
        {
            const QMutexLocker lock(&state.mutex);
            state.inHand.reset();
            auto& wanted =
                state.wanted[Reading].empty() ? state.wanted[Overview] : state.wanted[Reading];
            if (state.isStopped || wanted.empty()) {
                if (isLast)
                    state.isRunning = false;
                return !state.isStopped;
            }
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
