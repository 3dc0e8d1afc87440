#pragma once

#include "commands/FunctionScan.h"

#include <QObject>
#include <atomic>
#include <chrono>
#include <memory>

namespace quillory {

class LineNavigation;
class QPTextView;
class SyntaxColouring;

/// Goes to the functions of a document's text, as its definition describes them. Every answer is
/// for the text as it is now; none is kept for later.
class FunctionNavigation : public QObject
{
    Q_OBJECT

public:
    /// What is longer than that, in UTF-16 code units, is scanned on another thread.
    static constexpr TextOffset quickLength = 1 << 18;
    /// For which the GUI thread scans before it leaves that to another one.
    static constexpr std::chrono::milliseconds quickTime{8};

    using Then = std::function<void(const NavigationItems& items)>;

    /// All arguments outlive this.
    FunctionNavigation(QPTextView& textView, const SyntaxColouring& colouring,
                       LineNavigation& lineNavigation);
    ~FunctionNavigation() override;

    /// The scan of the text as it is now, to be run on any thread.
    FunctionScan scan() const;
    /// However long it takes.
    NavigationItems allNavigationItems() const;
    /// The items where finding them takes no time to speak of. Else none, and \a later is told
    /// them, unless this is asked for again, or cancelled, before.
    std::optional<NavigationItems> findNavigationItems(const Then& later);
    void cancelFinding();

    /// Counted from 1; 0 in an empty text. The empty line behind the last line break is the line
    /// before it here.
    qint64 currentLineNumber() const;
    /// 0 where the caret is in the line of one of \a items, else -1: which entry has a tick.
    qint64 currentFunctionIndexForFunctions(const NavigationItems& items) const;

    void goToItemOnLine(qint64 lineNumber);
    /// To the last function above the caret's line; a beep where there is none. Nothing happens
    /// below the last one.
    void goToPreviousFunction();
    /// To the first function below the caret's line; a beep where there is none.
    void goToNextFunction();

private:
    using Step = void (FunctionNavigation::*)(const NavigationItems&);
    void take(Step step);
    void goToPrevious(const NavigationItems& items);
    void goToNext(const NavigationItems& items);

    QPTextView& m_textView;
    const SyntaxColouring& m_colouring;
    LineNavigation& m_lineNavigation;
    std::shared_ptr<std::atomic_bool> m_cancelled; ///< of the scan at work; null without one
    std::vector<Step> m_steps;                     ///< that wait for it
};

} // namespace quillory
