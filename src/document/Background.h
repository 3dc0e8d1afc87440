#pragma once

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QThreadPool>
#include <memory>

namespace quillory {

/// Runs \a work on a thread of the pool and then, on \a context's thread, \a done with its result;
/// \a done is dropped when \a context is gone by then.
template<class Work, class Done>
void runInBackground(QObject* context, Work work, Done done)
{
    using Result = decltype(work());
    auto promise = std::make_shared<QPromise<Result>>();
    promise->future().then(context, std::move(done));
    QThreadPool::globalInstance()->start([promise, work = std::move(work)]() mutable {
        promise->start();
        promise->addResult(work());
        promise->finish();
    });
}

} // namespace quillory
