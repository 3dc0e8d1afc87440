#pragma once

#include "document/TextStatistics.h"

#include <QObject>
#include <atomic>
#include <memory>

namespace quillory {

class QPTextView;

/// Counts what a document holds, or what is selected in it: at once where that is soon done,
/// otherwise on another thread, which tells how far it is.
class DocumentStatistics : public QObject
{
    Q_OBJECT

public:
    /// \a textView outlives the counting.
    explicit DocumentStatistics(QPTextView& textView, QObject* parent = nullptr);
    ~DocumentStatistics() override;

    /// Counts the selected text, or all of it while nothing is selected, as it is now. What was
    /// being counted is given up.
    void generateStatistics();
    /// Gives up what is being counted.
    void cancel();

    bool isCounting() const { return m_cancelled != nullptr; }
    /// As far as they are known; see StatisticsCount.
    const TextStatistics& statistics() const { return m_progress.statistics; }
    bool isOfSelection() const { return !m_progress.statistics.lines; }
    /// How much was looked at, from 0 to 1.
    double share() const { return m_progress.share; }

Q_SIGNALS:
    /// The statistics are others, or all is counted.
    void changed();

private:
    struct Progress
    {
        TextStatistics statistics;
        double share = 0;
    };

    static Progress progressOf(const StatisticsCount& count)
    {
        return {count.statistics(), count.share()};
    }
    void take(const Progress& progress);

    QPTextView& m_textView;
    Progress m_progress;
    std::shared_ptr<std::atomic_bool> m_cancelled; ///< null when nothing is being counted
};

} // namespace quillory
