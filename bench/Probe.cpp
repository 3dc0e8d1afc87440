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

FirstPaint::FirstPaint(std::function<bool(QObject*)> isTarget, std::function<void()> painted)
    : m_isTarget(std::move(isTarget)), m_painted(std::move(painted))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool FirstPaint::eventFilter(QObject* object, QEvent* event)
{
    if (m_done || event->type() != QEvent::Paint || !m_isTarget(object))
        return false;
    m_done = true;
    QCoreApplication::instance()->removeEventFilter(this);
    // The event goes on to its receiver; what is queued comes after the frame is on its way.
    QMetaObject::invokeMethod(this, m_painted, Qt::QueuedConnection);
    return false;
}

bool PaintCounter::eventFilter(QObject* object, QEvent* event)
{
    m_count += event->type() == QEvent::Paint ? 1 : 0;
    return QObject::eventFilter(object, event);
}

} // namespace quillory::bench
