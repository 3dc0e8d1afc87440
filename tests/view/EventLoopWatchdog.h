#pragma once

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QObject>
#include <gtest/gtest.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define QUILLORY_SANITIZED
#endif
#endif
#ifdef __SANITIZE_ADDRESS__
#define QUILLORY_SANITIZED
#endif

namespace quillory {

/// While it lives, the test fails when the event loop stands still for more than 100 ms. Only
/// optimised builds without sanitizers are held to it.
class EventLoopWatchdog
{
public:
    static constexpr qint64 limit = 100; // milliseconds
#if defined(QUILLORY_SANITIZED) || !defined(__OPTIMIZE__)
    static constexpr bool isWatching = false;
#else
    static constexpr bool isWatching = true;
#endif

    EventLoopWatchdog()
    {
        m_sinceAwake.start();
        QAbstractEventDispatcher& dispatcher = *QAbstractEventDispatcher::instance();
        QObject::connect(&dispatcher, &QAbstractEventDispatcher::awake, &m_context,
                         [this] { m_sinceAwake.restart(); });
        QObject::connect(&dispatcher, &QAbstractEventDispatcher::aboutToBlock, &m_context,
                         [this] { check("handling events"); });
    }

    /// Runs \a work, the direct effect of one event that a test sends, and holds it to the limit.
    template<class Work>
    void watch(const char* what, Work&& work)
    {
        m_sinceAwake.restart();
        work();
        check(what);
    }

private:
    void check(const char* what)
    {
        const qint64 elapsed = m_sinceAwake.restart();
        if (isWatching && elapsed > limit)
            ADD_FAILURE() << what << " took " << elapsed << " ms";
    }

    QObject m_context;
    QElapsedTimer m_sinceAwake;
};

} // namespace quillory
