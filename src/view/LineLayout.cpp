#include "view/LineLayout.h"

#include <QPainter>
#include <QTextOption>
#include <algorithm>

namespace quillory {

namespace {

// Wider than any piece of text, within what the layout's 26.6 fixed-point numbers hold.
constexpr double unlimitedWidth = 16'000'000;

bool isRightToLeftUnit(QChar unit)
{
    // Nothing below U+0590 is; the scripts of the upper planes that are have these surrogates.
    const char16_t code = unit.unicode();
    if (code < 0x0590)
        return false;
    return unit.direction() == QChar::DirR || unit.direction() == QChar::DirAL ||
           (code >= 0x202B && code <= 0x202E) || (code >= 0x2067 && code <= 0x2068) ||
           (code >= 0xD802 && code <= 0xD803) || (code >= 0xD83A && code <= 0xD83B);
}

} // namespace

LineLayout::LineLayout(const QString& text, const TextFont& font, const Style& style)
    : m_layout(text, font.font()), m_rightToLeft(style.direction == Qt::LayoutDirectionAuto
                                                     ? text.isRightToLeft()
                                                     : style.direction == Qt::RightToLeft),
      m_hasRightToLeft(m_rightToLeft || std::any_of(text.begin(), text.end(), isRightToLeftUnit))
{
    // Rows of a given width end flush on the side at which their line begins; without one, the
    // text begins at 0.
    QTextOption option(style.wrapWidth > 0 && m_rightToLeft ? Qt::AlignRight | Qt::AlignAbsolute
                                                            : Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTabStopDistance(font.tabDistance());
    if (style.tabPhase > 0) {
        // One stop more than there are tabs, since each goes on to the next stop at least; the
        // characters between them are passed in steps of a few columns.
        QList<QTextOption::Tab> stops;
        const auto count = qsizetype(double(text.size()) * 4 / font.tabColumns()) + 2;
        for (qsizetype i = 1; i <= count; ++i)
            stops.append(QTextOption::Tab(double(i) * font.tabDistance() - style.tabPhase,
                                          QTextOption::LeftTab));
        option.setTabs(stops);
    }
    option.setTextDirection(m_rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(style.wrapWidth > 0 ? QTextOption::WrapAtWordBoundaryOrAnywhere
                                           : QTextOption::NoWrap);
    m_layout.setTextOption(option);
    m_layout.setCacheEnabled(true);
    m_layout.beginLayout();
    for (;;) {
        QTextLine line = m_layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(style.wrapWidth > 0 ? style.wrapWidth : unlimitedWidth);
        // Fallback fonts may be taller; the baseline stays where it is.
        line.setPosition({0, font.baseline() - line.ascent()});
    }
    m_layout.endLayout();
}

int LineLayout::rowOf(int index) const
{
    const QTextLine line = m_layout.lineForTextPosition(index);
    return line.isValid() ? line.lineNumber() : rowCount() - 1;
}

int LineLayout::rowStart(int row) const
{
    return m_layout.lineAt(row).textStart();
}

int LineLayout::rowEnd(int row) const
{
    const QTextLine line = m_layout.lineAt(row);
    return line.textStart() + line.textLength();
}

double LineLayout::rowLeft(int row) const
{
    return m_hasRightToLeft ? m_layout.lineAt(row).naturalTextRect().left() : 0;
}

double LineLayout::rowWidth(int row) const
{
    const QTextLine line = m_layout.lineAt(row);
    return m_hasRightToLeft ? line.naturalTextWidth() : line.cursorToX(rowEnd(row));
}

double LineLayout::xAt(int row, int index, CaretSide side) const
{
    const bool before = side == CaretSide::Before;
    const bool hasCharacter = before ? index > rowStart(row) : index < rowEnd(row);
    if (side == CaretSide::Any || !m_hasRightToLeft || !hasCharacter)
        return m_layout.lineAt(row).cursorToX(index);
    const Character character =
        characterFrom(row, before ? m_layout.previousCursorPosition(index) : index);
    return before == character.rightToLeft ? character.left : character.right;
}

/// At the first character of a stretch that runs against its line, Qt answers for both edges where
/// the stretch before ends; the glyphs tell where that character is.
LineLayout::Character LineLayout::characterFrom(int row, int index) const
{
    const QTextLine line = m_layout.lineAt(row);
    const double leading = line.cursorToX(index, QTextLine::Leading);
    const double trailing = line.cursorToX(index, QTextLine::Trailing);
    if (leading != trailing || index >= m_layout.text().size())
        return {std::min(leading, trailing), std::max(leading, trailing), trailing < leading};
    if (m_layout.text().at(index) == u'\t') { // of which Qt knows one edge; it runs as its line
        const double next = line.cursorToX(index + 1);
        return {std::min(leading, next), std::max(leading, next), m_rightToLeft};
    }
    double left = unlimitedWidth;
    double right = 0;
    const int length = m_layout.nextCursorPosition(index) - index;
    for (const QGlyphRun& run : line.glyphRuns(index, length)) {
        const auto advances = run.rawFont().advancesForGlyphIndexes(run.glyphIndexes());
        for (qsizetype i = 0; i < advances.size(); ++i) {
            if (advances[i].x() <= 0)
                continue;
            const double start = run.positions()[i].x();
            left = std::min(left, start);
            right = std::max(right, start + advances[i].x());
        }
    }
    if (left >= right)
        return {leading, leading, m_rightToLeft};
    return {left, right, !m_rightToLeft};
}

int LineLayout::characterAt(int row, double x) const
{
    const QTextLine line = m_layout.lineAt(row);
    x = std::clamp(x, -1.0, unlimitedWidth);
    const int first = rowStart(row);
    const int last = std::max(first, m_layout.previousCursorPosition(rowEnd(row)));
    const int index = line.xToCursor(x, QTextLine::CursorOnCharacter);
    // Beside numbers and tabs in text of both directions, Qt may answer another.
    int nearest = first;
    double distance = unlimitedWidth;
    const auto consider = [&](int candidate) {
        const int character = std::clamp(candidate, first, last);
        const Character place = characterFrom(row, character);
        const double away = std::max({place.left - x, x - place.right, 0.0});
        if (away < distance) {
            distance = away;
            nearest = character;
        }
    };
    consider(index);
    if (!m_hasRightToLeft)
        return nearest;
    consider(m_layout.previousCursorPosition(index));
    consider(m_layout.nextCursorPosition(index));
    for (int other = first; other <= last && distance > 0;) {
        consider(other);
        other = std::max(other + 1, m_layout.nextCursorPosition(other));
    }
    return nearest;
}

bool LineLayout::isRightToLeftAt(int row, int index) const
{
    return m_hasRightToLeft && characterFrom(row, index).rightToLeft;
}

int LineLayout::indexAt(int row, double x) const
{
    const QTextLine line = m_layout.lineAt(row);
    const int index = line.xToCursor(std::clamp(x, -1.0, unlimitedWidth));
    // Of a row that goes on below, Qt answers the place before the last character.
    const int end = rowEnd(row);
    const bool isEndNearer =
        index < end && row + 1 < rowCount() && m_layout.nextCursorPosition(index) >= end &&
        std::abs(x - line.cursorToX(end)) < std::abs(x - line.cursorToX(index));
    return isEndNearer ? end : index;
}

void LineLayout::forEachStretch(int row, int start, int end,
                                const std::function<void(double, double)>& visit) const
{
    const QTextLine line = m_layout.lineAt(row);
    if (!m_hasRightToLeft) {
        visit(line.cursorToX(start), line.cursorToX(end));
        return;
    }
    double left = 0;
    double right = 0;
    for (int index = start; index < end;) {
        const int next = std::clamp(m_layout.nextCursorPosition(index), index + 1, end);
        const Character place = characterFrom(row, index);
        if (index > start && (place.left == right || place.right == left)) {
            left = std::min(left, place.left);
            right = std::max(right, place.right);
        } else {
            if (right > left)
                visit(left, right);
            left = place.left;
            right = place.right;
        }
        index = next;
    }
    if (right > left)
        visit(left, right);
}

bool LineLayout::setColours(const std::vector<ColourRun>& runs, QRgb text)
{
    if (!m_glyphs.empty() && m_textColour == text && m_colours == runs)
        return false;
    m_colours = runs;
    m_textColour = text;
    m_glyphs.assign(size_t(rowCount()), {});
    for (int row = 0; row < rowCount(); ++row) {
        const QTextLine line = m_layout.lineAt(row);
        const int rowLimit = rowEnd(row);
        int done = rowStart(row);
        const auto add = [&](int limit, QRgb colour) {
            limit = std::min(limit, rowLimit);
            if (limit <= done)
                return;
            for (const QGlyphRun& glyphs : line.glyphRuns(done, limit - done))
                m_glyphs[size_t(row)].push_back({colour, glyphs});
            done = limit;
        };
        for (const ColourRun& run : runs) {
            add(run.start, text);
            add(run.start + run.length, run.colour);
        }
        add(rowLimit, text);
    }
    return true;
}

void LineLayout::draw(QPainter& painter, QPointF position, int row) const
{
    for (const ColouredGlyphs& run : m_glyphs[size_t(row)]) {
        painter.setPen(QColor::fromRgba(run.colour));
        painter.drawGlyphRun(position, run.glyphs);
    }
}

} // namespace quillory
