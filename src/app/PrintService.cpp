#include "app/PrintService.h"

#include <QPrinterInfo>
#include <QTimer>
#include <QVariant>
#include <mutex>
#include <thread>

namespace quillory {

namespace {

/// Shared with the thread that waits for the service.
struct Question
{
    std::mutex mutex;
    QTimer* timer = nullptr; ///< null once nobody waits for the answer
};

} // namespace

void PrintService::ask(QObject* asker, const std::function<void(bool)>& answer)
{
    auto question = std::make_shared<Question>();
    auto* timer = new QTimer(asker);
    question->timer = timer;
    const auto forget = [question] {
        const std::scoped_lock lock(question->mutex);
        question->timer = nullptr;
    };
    QObject::connect(timer, &QObject::destroyed, forget);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, asker, [forget, timer, answer] {
        forget();
        timer->deleteLater();
        answer(timer->property("answered").toBool());
    });
    timer->start(patience);
    // Not one of the pool's, which would keep the program from ending.
    std::thread([question] {
        QPrinterInfo::defaultPrinterName();
        const std::scoped_lock lock(question->mutex);
        if (question->timer)
            QMetaObject::invokeMethod(
                question->timer,
                [timer = question->timer] {
                    timer->setProperty("answered", true);
                    timer->start(0);
                },
                Qt::QueuedConnection);
    }).detach();
}

} // namespace quillory
