#include "commands/FunctionNavigation.h"

#include "editing/LineNavigation.h"
#include "editing/QPTextView.h"
#include "foundation/Background.h"
#include "syntax/SyntaxColouring.h"

#include <algorithm>

namespace quillory {

FunctionNavigation::FunctionNavigation(QPTextView& textView, const SyntaxColouring& colouring,
                                       LineNavigation& lineNavigation)
    : m_textView(textView), m_colouring(colouring), m_lineNavigation(lineNavigation)
{}

FunctionNavigation::~FunctionNavigation()
{
    cancelFinding();
}

FunctionScan FunctionNavigation::scan() const
{
    const Definition* definition = m_colouring.definition();
    const auto value = [definition](const char* key) {
        return definition ? definition->string(QLatin1StringView(key)) : std::nullopt;
    };
    FunctionScan scan;
    if (value("functionDefinition").value_or(QString()).isEmpty())
        return scan;
    scan.text = m_textView.string();
    scan.functionDefinition = m_colouring.state().functionDefinition;
    scan.ignoring = value("ignoreAsAFunctionComponent");
    return scan;
}

NavigationItems FunctionNavigation::allNavigationItems() const
{
    return scan().run().value_or(NavigationItems());
}

std::optional<NavigationItems> FunctionNavigation::findNavigationItems(const Then& later)
{
    using Clock = std::chrono::steady_clock;

    cancelFinding();
    const FunctionScan scan = this->scan();
    if (scan.text.length() <= quickLength) {
        const Clock::time_point end = Clock::now() + quickTime;
        if (auto items = scan.run([end] { return Clock::now() > end; }))
            return items;
    }
    m_cancelled = std::make_shared<std::atomic_bool>(false);
    runInBackground(
        this,
        [scan, cancelled = m_cancelled] { return scan.run([&] { return cancelled->load(); }); },
        [this, cancelled = m_cancelled, later](const std::optional<NavigationItems>& items) {
            if (*cancelled || !items)
                return;
            m_cancelled.reset();
            later(*items);
        });
    return std::nullopt;
}

void FunctionNavigation::cancelFinding()
{
    if (m_cancelled)
        *m_cancelled = true;
    m_cancelled.reset();
    m_steps.clear();
}

qint64 FunctionNavigation::currentLineNumber() const
{
    return lineNumberAt(m_textView.string(), m_textView.selectedRange().location);
}

qint64 FunctionNavigation::currentFunctionIndexForFunctions(const NavigationItems& items) const
{
    const qint64 line = currentLineNumber();
    const auto item = std::find_if(items.begin(), items.end(), [line](const NavigationItem& each) {
        return each.lineNumber >= line;
    });
    return item != items.end() && item->lineNumber == line ? 0 : -1;
}

void FunctionNavigation::goToItemOnLine(qint64 lineNumber)
{
    m_lineNavigation.goToLineVoid(lineNumber);
}

void FunctionNavigation::goToPreviousFunction()
{
    take(&FunctionNavigation::goToPrevious);
}

void FunctionNavigation::goToNextFunction()
{
    take(&FunctionNavigation::goToNext);
}

/// A key that is pressed again and again while a long text is scanned goes as many steps.
void FunctionNavigation::take(Step step)
{
    if (!m_steps.empty()) {
        m_steps.push_back(step);
        return;
    }
    const auto items =
        findNavigationItems([this, text = m_textView.string()](const NavigationItems& found) {
            for (const Step each : std::exchange(m_steps, {})) {
                // A text that was edited in the meantime has its caret elsewhere for a reason.
                if (m_textView.string().isSameTree(text))
                    (this->*each)(found);
            }
        });
    if (items)
        (this->*step)(*items);
    else
        m_steps.push_back(step);
}

void FunctionNavigation::goToPrevious(const NavigationItems& items)
{
    const qint64 line = currentLineNumber();
    if (line == 0 || items.empty()) {
        Q_EMIT m_textView.beep();
        return;
    }
    const auto item = std::find_if(items.begin(), items.end(), [line](const NavigationItem& each) {
        return each.lineNumber >= line;
    });
    if (item == items.end())
        return; // below the last one, there is neither a way nor a beep
    if (item == items.begin())
        Q_EMIT m_textView.beep();
    else
        goToItemOnLine(std::prev(item)->lineNumber);
}

void FunctionNavigation::goToNext(const NavigationItems& items)
{
    const qint64 line = currentLineNumber();
    const auto item = std::find_if(items.begin(), items.end(), [line](const NavigationItem& each) {
        return each.lineNumber > line;
    });
    if (line == 0 || item == items.end())
        Q_EMIT m_textView.beep();
    else
        goToItemOnLine(item->lineNumber);
}

} // namespace quillory
