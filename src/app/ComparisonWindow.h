#pragma once

#include "text/LineDiff.h"

#include <QColor>
#include <QWidget>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class QLabel;
class QToolButton;

namespace quillory {

class ComparisonLink;
class ComparisonSide;
class DocumentWindow;

/// Two texts beside each other, kept in step, with what differs between them; a text is left as it
/// is. The comparison is made on another thread, and given up when the window closes.
class ComparisonWindow : public QWidget
{
    Q_OBJECT

public:
    /// A button below the texts. Pressing it closes the window, then acts.
    struct Choice
    {
        QString label;
        QString toolTip;
        std::function<void()> act;
    };

    /// Shows \a left, the older one, and \a right, coloured as the text of \a window is, with which
    /// the comparison goes; the answer deletes itself when it is closed.
    static ComparisonWindow* compare(DocumentWindow& window, const QString& leftTitle,
                                     const TextSnapshot& left, const QString& rightTitle,
                                     const TextSnapshot& right,
                                     const std::vector<Choice>& choices = {});
    /// The same, to be shown by itself or as a part of a window.
    ComparisonWindow(DocumentWindow& window, const QString& leftTitle, const TextSnapshot& left,
                     const QString& rightTitle, const TextSnapshot& right,
                     const std::vector<Choice>& choices);
    ~ComparisonWindow() override;

    ComparisonSide& left() const { return *m_left; }
    ComparisonSide& right() const { return *m_right; }
    /// None while they are not known.
    const std::optional<LineDifferences>& differences() const { return m_differences; }
    /// The one that was gone to last, by its index; -1 for none.
    int current() const { return m_current; }
    void goToNext() { step(1); }
    void goToPrevious() { step(-1); }
    /// What is said of the differences.
    QString outcome() const;

Q_SIGNALS:
    void compared();

private:
    void build(const std::vector<Choice>& choices);
    void begin();
    void take(LineDifferences differences);
    void step(int direction);
    void goTo(int index);
    void follow(const ComparisonSide& leader, ComparisonSide& follower);
    void showDifferences();
    void markWithin(size_t index);
    void showOutcome();
    QColor colourOf(const LineDifference& difference, bool isCurrent) const;
    std::pair<size_t, size_t> inSight() const;

    ComparisonSide* m_left;
    ComparisonSide* m_right;
    ComparisonLink* m_link;
    QLabel* m_outcome;
    QToolButton* m_previous;
    QToolButton* m_next;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    std::optional<LineDifferences> m_differences;
    std::vector<bool> m_marked; ///< those of which what differs within the lines is marked
    int m_current = -1;
};

} // namespace quillory
