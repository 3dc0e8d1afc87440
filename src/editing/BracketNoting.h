#pragma once

#include "text/TextStorage.h"

#include <QObject>
#include <QTimer>

namespace quillory {

/// Soon after a large text came into the storage, reads it on another thread and notes where its
/// brackets are, so that no look-up of a bracket's partner need read it while somebody types.
class BracketNoting : public QObject
{
    Q_OBJECT

public:
    /// So many UTF-16 code units at once are a large text: it is read in a few milliseconds.
    static constexpr TextOffset largeText = 2'000'000;

    explicit BracketNoting(TextStorage& storage, QObject* parent = nullptr);

Q_SIGNALS:
    /// The text as it was when the reading began is noted.
    void noted();

private:
    void note();

    TextStorage& m_storage;
    QTimer m_timer;
    bool m_isNoting = false;
};

} // namespace quillory
