#include "text/LineBreaks.h"

#include "text/LineMetrics.h"
#include "text/TextBuilder.h"
#include "text/TextSearch.h"

#include <algorithm>
#include <vector>

namespace quillory {

namespace {

std::span<const uchar> spanOf(QLatin1StringView units)
{
    return {reinterpret_cast<const uchar*>(units.data()), size_t(units.size())};
}

std::span<const char16_t> spanOf(QStringView units)
{
    return {units.utf16(), size_t(units.size())};
}

/// Calls \a visit(index, length) for every LF, CR and CR LF of \a units, first to last. A CR LF
/// never straddles two pieces.
template<class View, class Visit>
void forEachBreak(View units, Visit&& visit)
{
    const auto all = spanOf(units);
    for (qsizetype begin = 0, length = 0; (length = endOfBreak(all.subspan(size_t(begin)), 1)) > 0;
         begin += length) {
        const qsizetype last = begin + length - 1;
        const bool isPair = length > 1 && units[last] == u'\n' && units[last - 1] == u'\r';
        if (isPair || units[last] == u'\n' || units[last] == u'\r')
            visit(isPair ? last - 1 : last, qsizetype(isPair ? 2 : 1));
    }
}

/// Adds the breaks of a piece, which is no longer than a leaf and holds its CR LF whole. Sums of 16
/// bits let the compiler count many units at once.
template<class Unit>
void countBreaks(std::span<const Unit> units, LineBreakCounts& counts)
{
    static_assert(TextLeaf::maximumUnits <= 0xFFFF);
    quint16 lf = 0;
    quint16 cr = 0;
    quint16 pairs = 0;
    for (size_t i = 0; i < units.size(); ++i) {
        lf += units[i] == '\n' ? 1 : 0;
        cr += units[i] == '\r' ? 1 : 0;
    }
    for (size_t i = 1; cr > 0 && i < units.size(); ++i)
        pairs += units[i - 1] == '\r' && units[i] == '\n' ? 1 : 0;
    counts.lf += lf - pairs;
    counts.cr += cr - pairs;
    counts.crLf += pairs;
}

/// The breaks that \a format would change, or the first \a most of them.
std::vector<TextRange> wrongBreaks(const TextSnapshot& text, QStringView wanted, size_t most)
{
    std::vector<TextRange> wrong;
    text.forEachPiece(text.range(), [&](const TextPiece& piece) {
        std::visit(
            [&](auto units) {
                forEachBreak(units, [&](qsizetype index, qsizetype length) {
                    if (units.sliced(index, length) != wanted && wrong.size() < most)
                        wrong.push_back({piece.location + index, length});
                });
            },
            piece.units);
        return wrong.size() < most;
    });
    return wrong;
}

TextSnapshot rebuilt(const TextSnapshot& text, QStringView wanted)
{
    TextBuilder builder;
    text.forEachPiece(text.range(), [&](const TextPiece& piece) {
        std::visit(
            [&](auto units) {
                qsizetype copied = 0;
                forEachBreak(units, [&](qsizetype index, qsizetype length) {
                    builder.append(units.sliced(copied, index - copied));
                    builder.append(wanted);
                    copied = index + length;
                });
                builder.append(units.sliced(copied));
            },
            piece.units);
    });
    return builder.finish();
}

} // namespace

QStringView lineBreak(LineBreakFormat format)
{
    switch (format) {
    case LineBreakFormat::macCr:
        return u"\r";
    case LineBreakFormat::windowsCrLf:
        return u"\r\n";
    default:
        return u"\n";
    }
}

QString label(LineBreakFormat format)
{
    switch (format) {
    case LineBreakFormat::unixLf:
        return QStringLiteral("Unix (LF)");
    case LineBreakFormat::macCr:
        return QStringLiteral("Mac (CR)");
    case LineBreakFormat::windowsCrLf:
        return QStringLiteral("Windows (CRLF)");
    default:
        return QStringLiteral("UNIX (LF)");
    }
}

LineBreakFormat detectLBFormat(const TextSnapshot& text)
{
    const TextOffset cr = find(text, u"\r", text.range());
    if (cr < 0)
        return LineBreakFormat::unixLf;
    return cr + 1 < text.length() && text.at(cr + 1) == u'\n' ? LineBreakFormat::windowsCrLf
                                                              : LineBreakFormat::macCr;
}

TextSnapshot converted(const TextSnapshot& text, LineBreakFormat format)
{
    // A few breaks are replaced one by one in the tree, which keeps the other leaves.
    constexpr size_t few = 64;
    const QStringView wanted = lineBreak(format);
    if (wanted == u"\n" && find(text, u"\r", text.range()) < 0)
        return text;
    std::vector<TextRange> wrong = wrongBreaks(text, wanted, few);
    if (wrong.size() == few)
        return rebuilt(text, wanted);
    TextSnapshot result = text;
    const TextSnapshot replacement(wanted);
    std::reverse(wrong.begin(), wrong.end()); // so that ranges still to come stay true
    for (const TextRange range : wrong)
        result = result.replacing(range, replacement);
    return result;
}

LineBreakCounts lineBreakCounts(const TextSnapshot& text)
{
    LineBreakCounts counts;
    text.forEachPiece(text.range(), [&](const TextPiece& piece) {
        std::visit([&](auto units) { countBreaks(spanOf(units), counts); }, piece.units);
    });
    counts.separators = text.lineCount() - 1 - counts.lf - counts.cr - counts.crLf;
    return counts;
}

} // namespace quillory
