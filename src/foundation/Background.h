#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <memory>

namespace quillory {

/// The threads of the program's own work. They are not the toolkit's: painting shares large areas
/// out to those, and waits for them. Its work is done before the application is gone.
inline QThreadPool& backgroundPool()
{
    static QThreadPool pool;
    [[maybe_unused]] static const bool isAwaited = [] {
        qAddPostRoutine([] { backgroundPool().waitForDone(); });
        return true;
    }();
    return pool;
}

/// Runs \a work on a thread of the pool and then, on the application's thread, \a done with its
/// result; \a done is dropped when \a context, an object of that thread, is gone by then.
template<class Work, class Done>
void runInBackground(QObject* context, Work work, Done done)
{
    backgroundPool().start([guard = QPointer<QObject>(context), work = std::move(work),
                            done = std::move(done)]() mutable {
        auto result = std::make_shared<decltype(work())>(work());
        // The application outlives the pool's threads; whether the context did is for its own
        // thread to see.
        QMetaObject::invokeMethod(
            qApp,
            [guard, done = std::move(done), result]() mutable {
                if (guard)
                    done(std::move(*result));
            },
            Qt::QueuedConnection);
    });
}

/// While it lives, the pool may run another thread in the place of this one, which waits or takes
/// long.
struct WaitingInPool
{
    WaitingInPool() { backgroundPool().releaseThread(); }
    ~WaitingInPool() { backgroundPool().reserveThread(); }
    Q_DISABLE_COPY_MOVE(WaitingInPool)
};

/// Lets go of \a object on a thread of the pool: freeing a large text takes long.
template<class Object>
void releaseInBackground(Object object)
{
    backgroundPool().start([object = std::move(object)]() mutable { object = Object(); });
}

} // namespace quillory
