#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <memory>

namespace quillory {

/// Runs \a work on a thread of the pool and then, on the application's thread, \a done with its
/// result; \a done is dropped when \a context, an object of that thread, is gone by then.
template<class Work, class Done>
void runInBackground(QObject* context, Work work, Done done)
{
    QThreadPool::globalInstance()->start([guard = QPointer<QObject>(context),
                                          work = std::move(work),
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

/// While it lives, the pool may run another thread in the place of this one, which waits.
struct WaitingInPool
{
    WaitingInPool() { QThreadPool::globalInstance()->releaseThread(); }
    ~WaitingInPool() { QThreadPool::globalInstance()->reserveThread(); }
    Q_DISABLE_COPY_MOVE(WaitingInPool)
};

/// Lets go of \a object on a thread of the pool: freeing a large text takes long.
template<class Object>
void releaseInBackground(Object object)
{
    QThreadPool::globalInstance()->start(
        [object = std::move(object)]() mutable { object = Object(); });
}

} // namespace quillory
