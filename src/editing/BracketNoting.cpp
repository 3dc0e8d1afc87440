#include "editing/BracketNoting.h"

#include "foundation/Background.h"
#include "text/BracketMatching.h"

#include <chrono>

namespace quillory {

namespace {

using namespace std::chrono_literals;

/// A file comes in parts; what follows sooner than this is read together with it.
constexpr auto pause = 100ms;

} // namespace

BracketNoting::BracketNoting(TextStorage& storage, QObject* parent)
    : QObject(parent), m_storage(storage)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(pause);
    connect(&m_timer, &QTimer::timeout, this, &BracketNoting::note);
    connect(&storage, &TextStorage::edited, this, [this](const TextChange& change) {
        if (change.insertedLength >= largeText)
            m_timer.start();
    });
}

void BracketNoting::note()
{
    if (m_isNoting) {
        m_timer.start();
        return;
    }
    m_isNoting = true;
    runInBackground(
        this,
        [text = m_storage.snapshot()]() mutable {
            noteBrackets(text);
            text = TextSnapshot(); // here, where it may be the last one that holds a large text
            return true;
        },
        [this](bool) {
            m_isNoting = false;
            Q_EMIT noted();
        });
}

} // namespace quillory
