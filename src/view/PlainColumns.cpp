#include "view/PlainColumns.h"

#include <QFontInfo>
#include <cmath>

namespace quillory {

namespace {

char16_t codeOf(char latin1)
{
    return uchar(latin1);
}

char16_t codeOf(QChar unit)
{
    return unit.unicode();
}

/// Calls \a visit with the columns before and after each character from the start of \a range on;
/// false ends it. Answers whether all that were visited are plain.
template<class Visit>
bool countColumns(const TextSnapshot& text, TextRange range, int tabColumns, Visit visit)
{
    double column = 0;
    bool isPlain = true;
    text.forEachPiece(range, [&](const TextPiece& piece) {
        return std::visit(
            [&](auto units) {
                for (const auto unit : units) {
                    const char16_t code = codeOf(unit);
                    const bool isTab = code == u'\t';
                    if (!isTab && (code < 0x20 || code > 0x7E)) {
                        isPlain = false;
                        return false;
                    }
                    const double next =
                        isTab ? (std::floor(column / tabColumns) + 1) * tabColumns : column + 1;
                    if (!visit(column, next))
                        return false;
                    column = next;
                }
                return true;
            },
            piece.units);
    });
    return isPlain;
}

/// A combining mark behind the place would belong to the character before it.
bool isBeforePlain(const TextSnapshot& text, const TextGeometry::Row& row, TextOffset place)
{
    return place >= row.range.end() || text.at(place) <= 0x7E;
}

} // namespace

bool PlainColumns::areUsable() const
{
    return !m_geometry.wraps() && m_geometry.preedit().text.isEmpty() &&
           QFontInfo(m_geometry.font().font()).fixedPitch();
}

std::optional<TextOffset> PlainColumns::placeAt(const TextGeometry::Row& row, double x) const
{
    const TextSnapshot& text = m_geometry.text();
    const double wanted = x / m_geometry.font().advance();
    TextOffset place = row.range.location;
    const auto pass = [&](double before, double after) {
        if (wanted < (before + after) / 2)
            return false;
        ++place;
        return true;
    };
    const bool isPlain = countColumns(text, row.range, m_geometry.font().tabColumns(), pass);
    return isPlain && isBeforePlain(text, row, place) ? std::optional(place) : std::nullopt;
}

std::optional<double> PlainColumns::xOf(const TextGeometry::Row& row, TextOffset offset) const
{
    const TextSnapshot& text = m_geometry.text();
    double column = 0;
    const auto pass = [&](double, double after) {
        column = after;
        return true;
    };
    const bool isPlain = countColumns(text, TextRange::between(row.range.location, offset),
                                      m_geometry.font().tabColumns(), pass) &&
                         isBeforePlain(text, row, offset);
    return isPlain ? std::optional(column * m_geometry.font().advance()) : std::nullopt;
}

} // namespace quillory
