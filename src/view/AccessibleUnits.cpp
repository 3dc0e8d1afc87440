#include "view/AccessibleUnits.h"

#include "text/TextBoundary.h"
#include "view/TextGeometry.h"

#include <QTextBoundaryFinder>

namespace quillory {

namespace {

constexpr TextOffset pieceLength = 4096; ///< of a long row or line

} // namespace

TextRange AccessibleUnits::unitAt(TextOffset offset, QAccessible::TextBoundaryType kind) const
{
    const TextSnapshot& text = m_geometry.text();
    offset = std::clamp<TextOffset>(offset, 0, text.length());
    switch (kind) {
    case QAccessible::CharBoundary: {
        const TextOffset start = characterStart(text, offset);
        return TextRange::between(start, characterAfter(text, start));
    }
    case QAccessible::WordBoundary:
        return wordAt(text, offset);
    case QAccessible::SentenceBoundary:
        return sentenceAt(offset);
    case QAccessible::LineBoundary:
        return piece(rowAt(offset), offset);
    case QAccessible::ParagraphBoundary:
        return piece(lineAt(offset), offset);
    case QAccessible::NoBoundary:
        break;
    }
    return text.range();
}

std::optional<TextRange> AccessibleUnits::unitBefore(TextOffset offset,
                                                     QAccessible::TextBoundaryType kind) const
{
    const TextOffset start = unitAt(offset, kind).location;
    if (start == 0)
        return {};
    const TextRange before = unitAt(start - 1, kind);
    return TextRange::between(before.location, std::min(before.end(), start));
}

std::optional<TextRange> AccessibleUnits::unitAfter(TextOffset offset,
                                                    QAccessible::TextBoundaryType kind) const
{
    const TextOffset end = unitAt(offset, kind).end();
    const TextRange after = unitAt(end, kind);
    if (after.end() > end)
        return TextRange::between(std::max(end, after.location), after.end());
    // At the text's end only an empty last line follows, and only the line before it.
    const bool isEmptyLine =
        after == TextRange{end, 0} && kind != QAccessible::CharBoundary && offset < end;
    return isEmptyLine ? std::optional(after) : std::nullopt;
}

TextRange AccessibleUnits::lineAt(TextOffset offset) const
{
    return m_geometry.text().line(m_geometry.text().lineAt(offset));
}

TextRange AccessibleUnits::rowAt(TextOffset offset) const
{
    const TextGeometry::Row row = m_geometry.rowAt(offset);
    return row.endsLine()
               ? TextRange::between(row.range.location, m_geometry.text().line(row.line).end())
               : row.range;
}

TextRange AccessibleUnits::sentenceAt(TextOffset offset) const
{
    const TextRange stretch = piece(lineAt(offset), offset);
    const QString around = m_geometry.text().string(stretch);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, around);
    finder.setPosition(offset - stretch.location);
    if (!finder.isAtBoundary() || offset == stretch.end())
        finder.toPreviousBoundary();
    const TextOffset start = stretch.location + std::max<qsizetype>(0, finder.position());
    const qsizetype next = finder.toNextBoundary();
    return TextRange::between(start, next < 0 ? stretch.end() : stretch.location + next);
}

/// The piece of a long \a unit that holds \a offset; the same for each offset in it.
TextRange AccessibleUnits::piece(TextRange unit, TextOffset offset) const
{
    if (unit.length <= pieceLength)
        return unit;
    const TextSnapshot& text = m_geometry.text();
    const auto cut = [&](TextOffset index) {
        const TextOffset place = unit.location + index * pieceLength;
        return place >= unit.end() ? unit.end() : characterStart(text, place);
    };
    TextOffset index = std::min(offset, unit.end() - 1) - unit.location;
    index /= pieceLength;
    if (offset >= cut(index + 1) && cut(index + 1) < unit.end()) // in a character that was moved
        ++index;
    return TextRange::between(cut(index), cut(index + 1));
}

} // namespace quillory
