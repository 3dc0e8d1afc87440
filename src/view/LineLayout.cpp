#include "view/LineLayout.h"

#include <QPainter>
#include <QTextOption>
#include <algorithm>

namespace quillory {

namespace {

// Wider than any piece of text, within what the layout's 26.6 fixed-point numbers hold.
constexpr double unlimitedWidth = 16'000'000;

// In text of both directions, finding the places of so many characters one by one would be felt.
constexpr int costlyLength = 256;

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

/// Takes no room, and is passed over rather than asked for: text may be full of them.
bool isDirectionControl(QChar unit)
{
    const char16_t code = unit.unicode();
    return (code >= 0x200E && code <= 0x200F) || (code >= 0x202A && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069) || code == 0x061C;
}

/// Whether a letter is one of a script that is written from right to left; none for what is no
/// letter, and for half of one.
std::optional<bool> isRightToLeftLetter(QChar unit)
{
    if (unit.isSurrogate() || isDirectionControl(unit))
        return {};
    const QChar::Direction direction = unit.direction();
    if (direction == QChar::DirL)
        return false;
    return direction == QChar::DirR || direction == QChar::DirAL ? std::optional(true)
                                                                 : std::nullopt;
}

/// Where the letters of one direction that begin at \a index end, at most at \a end. They stand
/// side by side, whatever is around them.
int endOfLetters(const QString& text, int index, int end)
{
    const auto first = isRightToLeftLetter(text.at(index));
    int next = index + 1;
    while (first && next < end && isRightToLeftLetter(text.at(next)) == first)
        ++next;
    return next;
}

} // namespace

LineLayout::LineLayout(const QString& text, const TextFont& font, const Style& style)
    : m_layout(text, font.font()), m_length(int(text.size())),
      m_rightToLeft(style.direction == Qt::LayoutDirectionAuto
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
    m_rowCount = m_layout.lineCount();
    if (m_rowCount == 1)
        m_width = widthOf(0);
}

void LineLayout::dropLastRow()
{
    if (m_rowCount < 2)
        return;
    m_length = rowStart(--m_rowCount);
    m_glyphs.clear();
}

int LineLayout::rowOf(int index) const
{
    const QTextLine line = m_layout.lineForTextPosition(index);
    return line.isValid() ? std::min(line.lineNumber(), m_rowCount - 1) : m_rowCount - 1;
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
    return m_layout.lineCount() == 1 ? m_width : widthOf(row);
}

double LineLayout::widthOf(int row) const
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
    double trailing = line.cursorToX(index, QTextLine::Trailing);
    // Of letters that share a glyph, Qt answers for the trailing edge where the glyph ends.
    const int after = leading == trailing ? index : m_layout.nextCursorPosition(index);
    if (after > index && after < rowEnd(row)) {
        const double divide = line.cursorToX(after, QTextLine::Leading);
        if (std::min(leading, trailing) < divide && divide < std::max(leading, trailing))
            trailing = divide;
    }
    if (leading != trailing || index >= m_length)
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
        index < end && row + 1 < m_layout.lineCount() &&
        m_layout.nextCursorPosition(index) >= end &&
        std::abs(x - line.cursorToX(end)) < std::abs(x - line.cursorToX(index));
    return isEndNearer ? end : index;
}

/// Between which all of \a row stands, the blanks at its end included, which the row's width may
/// leave out.
std::pair<double, double> LineLayout::edges(int row) const
{
    double left = rowLeft(row);
    double right = left + rowWidth(row);
    const QString text = m_layout.text();
    const int end = rowEnd(row);
    int blanks = end;
    while (blanks > rowStart(row) && text.at(blanks - 1).isSpace())
        --blanks;
    for (const int index : {blanks, end - 1}) {
        if (index < blanks || index >= end)
            continue;
        const Character blank = characterFrom(row, index);
        left = std::min(left, blank.left);
        right = std::max(right, blank.right);
    }
    return {left, right};
}

void LineLayout::forEachStretch(int row, int start, int end,
                                const std::function<void(double, double)>& visit) const
{
    const QTextLine line = m_layout.lineAt(row);
    if (!m_hasRightToLeft) {
        visit(line.cursorToX(start), line.cursorToX(end));
        return;
    }
    const QString text = m_layout.text();
    if (end - start >= costlyLength && start == rowStart(row) && end == rowEnd(row)) {
        const auto [first, last] = edges(row);
        visit(first, last);
        return;
    }
    double left = 0;
    double right = 0;
    for (int index = start; index < end;) {
        if (isDirectionControl(text.at(index))) {
            ++index;
            continue;
        }
        const int letters = endOfLetters(text, index, end);
        const int next = std::clamp(m_layout.nextCursorPosition(letters - 1), letters, end);
        Character place = characterFrom(row, index);
        const int last = m_layout.previousCursorPosition(next);
        if (last > index) {
            const Character other = characterFrom(row, last);
            place.left = std::min(place.left, other.left);
            place.right = std::max(place.right, other.right);
        }
        if (right > left && (place.left == right || place.right == left)) {
            left = std::min(left, place.left);
            right = std::max(right, place.right);
        } else if (place.right > place.left) {
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
