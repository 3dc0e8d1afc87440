#include "Probe.h"

#include <QCoreApplication>
#include <QFile>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace quillory::bench {

qint64 now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

qint64 residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    const QByteArray pages = file.open(QFile::ReadOnly) ? file.readAll().split(' ').value(1) : "0";
    return pages.toLongLong() * sysconf(_SC_PAGESIZE);
}

void report(std::initializer_list<std::pair<const char*, double>> figures)
{
    const char* separator = "{";
    for (const auto& [name, value] : figures) {
        std::printf("%s\"%s\": %.17g", separator, name, value);
        separator = ", ";
    }
    std::printf("}\n");
    std::fflush(stdout);
}

PaintProbe::PaintProbe(std::function<bool(QObject*)> isTarget,
                       std::function<void(qint64 at)> painted)
    : m_isTarget(std::move(isTarget)), m_painted(std::move(painted))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool PaintProbe::eventFilter(QObject* object, QEvent* event)
{
    if (m_done || event->type() != QEvent::Paint || !m_isTarget(object))
        return false;
    m_done = true;
    QCoreApplication::instance()->removeEventFilter(this);
    object->event(event);
    QMetaObject::invokeMethod(
        this, [this, at = now()] { m_painted(at); }, Qt::QueuedConnection);
    return true;
}

bool PaintCounter::eventFilter(QObject* object, QEvent* event)
{
    m_count += event->type() == QEvent::Paint ? 1 : 0;
    return QObject::eventFilter(object, event);
}

} // namespace quillory::bench
