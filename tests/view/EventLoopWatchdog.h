#pragma once

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QObject>
#include <ctime>
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

/// While it lives, the test fails when the event loop stands still for more than 100 ms of this
/// thread's own time, or, since others may keep the processor busy, a second of the clock's. Only
/// optimised builds without sanitizers are held to it.
class EventLoopWatchdog
{
public:
    static constexpr qint64 limit = 100;       ///< milliseconds of processor time
    static constexpr qint64 clockLimit = 1000; ///< milliseconds
#if defined(QUILLORY_SANITIZED) || !defined(__OPTIMIZE__)
    static constexpr bool isWatching = false;
#else
    static constexpr bool isWatching = true;
#endif

    EventLoopWatchdog()
    {
        restart();
        QAbstractEventDispatcher& dispatcher = *QAbstractEventDispatcher::instance();
        QObject::connect(&dispatcher, &QAbstractEventDispatcher::awake, &m_context,
                         [this] { restart(); });
        QObject::connect(&dispatcher, &QAbstractEventDispatcher::aboutToBlock, &m_context,
                         [this] { check("handling events"); });
    }

    /// Runs \a work, the direct effect of one event that a test sends, and holds it to the limit.
    template<class Work>
    void watch(const char* what, Work&& work)
    {
        restart();
        work();
        check(what);
    }

private:
    static qint64 processorTime()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return qint64(time.tv_sec) * 1000 + time.tv_nsec / 1'000'000;
    }

    void restart()
    {
        m_sinceAwake.start();
        m_processorTime = processorTime();
    }

    void check(const char* what)
    {
        const qint64 worked = processorTime() - m_processorTime;
        const qint64 elapsed = m_sinceAwake.elapsed();
        restart();
        if (isWatching && (worked > limit || elapsed > clockLimit))
            ADD_FAILURE() << what << " took " << worked << " ms of work, " << elapsed
                          << " ms in all";
    }

    QObject m_context;
    QElapsedTimer m_sinceAwake;
    qint64 m_processorTime = 0;
};

} // namespace quillory
