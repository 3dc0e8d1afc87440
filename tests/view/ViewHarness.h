#pragma once

#include "foundation/UserDefaults.h"
#include "view/TextViewWidget.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {

/// A text view as a document has it, shown and focused, 800 by 400 pixels large.
class ViewHarness
{
public:
    explicit ViewHarness(const QString& text = {});

    QTemporaryDir folder;
    UserDefaults defaults{
        folder.filePath(QStringLiteral("defaults"))}; ///< of which none is written
    TextStorage storage;
    UndoManager undo{storage};
    QPTextView editor{storage, undo, &defaults};
    Overlay overlay;
    TextViewWidget view{editor, overlay};

    QString text() const { return storage.snapshot().string(); }
    /// Text that holds its selections: | is a caret or the head of one, ^ its anchor.
    void setMarked(const QString& marked);
    QString marked() const;

    /// Clicks keys named as in "Ctrl+Shift+Left"; a name in quotes, "'abc'", is typed.
    void press(const QStringList& keys);
    /// Handles events until the view has painted what it has to.
    void settle();

    /// Where the character at \a offset stands, in the viewport; scrolls there first.
    QPoint pointOf(TextOffset offset);
    void click(TextOffset offset, Qt::KeyboardModifiers modifiers = {},
               Qt::MouseButton button = Qt::LeftButton);
};

/// What the view's counters rise by while it lives.
class WorkDone
{
public:
    explicit WorkDone(ViewHarness& harness)
        : m_harness(harness), m_before(harness.view.workCounters())
    {}
    WorkCounters operator()()
    {
        m_harness.settle();
        const WorkCounters& now = m_harness.view.workCounters();
        return {now.linesLaidOut - m_before.linesLaidOut,
                now.chunksLaidOut - m_before.chunksLaidOut, now.unitsShaped - m_before.unitsShaped,
                now.layoutsColoured - m_before.layoutsColoured,
                now.piecesVisited - m_before.piecesVisited};
    }

private:
    ViewHarness& m_harness;
    WorkCounters m_before;
};

/// \a line so often that there are \a units of them.
QString repeated(const QString& line, qsizetype units);

} // namespace quillory
