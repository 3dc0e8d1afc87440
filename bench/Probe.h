#pragma once

#include <QByteArray>
#include <QEvent>
#include <QObject>
#include <functional>
#include <vector>

namespace quillory::bench {

/// Nanoseconds of the clock that all processes share.
qint64 now();

/// The memory of this process that is in use, in bytes.
qint64 residentBytes();

/// Prints a line of JSON, {"name": value, ...}, that bench/budgets reads.
void report(std::initializer_list<std::pair<const char*, double>> figures);

/// Tells when the first painting of an object that \a isTarget accepts was done, once the events
/// at hand are handled.
class PaintProbe : public QObject
{
public:
    PaintProbe(std::function<bool(QObject*)> isTarget, std::function<void(qint64 at)> painted);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    std::function<bool(QObject*)> m_isTarget;
    std::function<void(qint64 at)> m_painted;
    bool m_done = false;
};

/// Counts how often an object is painted.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QObject& target) { target.installEventFilter(this); }
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    int m_count = 0;
};

} // namespace quillory::bench
