#pragma once

#include <QObject>
#include <functional>

namespace quillory {

/// Looks whether the desktop's print service answers. Whoever makes a QPrinter waits for it, for
/// minutes if need be, so one asks here first.
class PrintService
{
public:
    static constexpr int patience = 4000; ///< milliseconds until it counts as silent

    /// Tells \a answer a little later, once, unless \a asker is gone by then.
    static void ask(QObject* asker, const std::function<void(bool answers)>& answer);
};

} // namespace quillory
