#pragma once

#include "text/TextSnapshot.h"

#include <QObject>
#include <optional>

namespace quillory {

class QPTextView;

/// Line \a number of \a text, counted from 1, whole and with its break. Behind the last break there
/// is a line too, which may be empty; one number further, where the last line has no break, it is
/// meant once more. None for other numbers. O(log n).
std::optional<TextRange> lineWithNumber(const TextSnapshot& text, qint64 number);

/// Goes to lines by their number.
class LineNavigation : public QObject
{
    Q_OBJECT

public:
    /// \a textView outlives this.
    explicit LineNavigation(QPTextView& textView) : m_textView(textView) {}

    /// Selects the line, see lineWithNumber(), with the caret at its start, and says so by
    /// lineSelected(). Nothing happens where there is no such line.
    void goToLineVoid(qint64 number);

Q_SIGNALS:
    /// \a line is to be brought into sight, and the eye led to it.
    void lineSelected(quillory::TextRange line);

private:
    QPTextView& m_textView;
};

} // namespace quillory
