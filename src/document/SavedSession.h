#pragma once

#include "foundation/PropertyList.h"
#include "foundation/Result.h"
#include "text/Selection.h"

#include <QRect>
#include <QString>
#include <vector>

namespace quillory {

/// What brings a document's window back as it was.
struct SavedWindow
{
    QString path;         ///< of the file; empty for a document without one
    QString journal;      ///< of its edits, by EditJournal::id(); empty for none
    bool wasLeft = false; ///< the journal, by a program that ended as it should
    /// When the file was last changed as far as the document knew, in nanoseconds since 1970; 0 for
    /// no file.
    qint64 fileModified = 0;

    /// In logical pixels: where the frame begins, and how large the window is inside of it, while
    /// it is neither maximised nor fills the screen.
    QRect frame;
    QString screen; ///< by name
    bool isMaximised = false;
    bool isFullScreen = false;
    bool isMinimised = false;
    bool isFloating = false;
    bool hidesLineNumbers = false;
    bool hidesStatusLine = false;
    int zoom = 0; ///< points added to the font's size

    std::vector<Selection> selections;
    size_t primary = 0; ///< index of the selection to keep in sight

    // What is at the window's top.
    qint64 firstLine = 0;   ///< counts from 0
    qint64 firstColumn = 0; ///< UTF-16 code units of that line before the row at the top
    int firstRowY = 0;      ///< logical pixels from the top of the view to that of the row
    double scrolledX = 0;   ///< logical pixels

    PropertyList::Dictionary state; ///< see WindowState.h
    QString definitionTitle;        ///< what the index in the state stood for
    qint64 encoding = 0;            ///< the same; 0 where the file does not have it

    /// There is something to bring back.
    bool isWorthwhile() const { return !path.isEmpty() || !journal.isEmpty(); }
    bool operator==(const SavedWindow&) const = default;
};

/// The windows of a session, from the one in front to the one at the back, as a property list and
/// back. Of more selections than maximumSelections only the primary one is kept.
PropertyList encodeSession(const std::vector<SavedWindow>& windows);
/// Fails where \a list is no session. Numbers out of their range are pulled into it, and a window
/// that there is nothing to bring back of is left out.
Result<std::vector<SavedWindow>> decodeSession(const PropertyList& list);

inline constexpr size_t maximumSelections = 1000;

} // namespace quillory
