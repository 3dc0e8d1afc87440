#include "text/LineBreaks.h"

#include "text/TextBuilder.h"
#include "text/TextReader.h"
#include "text/TextSearch.h"

#include <vector>

namespace quillory {

namespace {

bool isControlBreak(QChar unit)
{
    return unit == u'\n' || unit == u'\r';
}

/// Calls \a visit(index, length) for every LF, CR and CR LF of \a units, first to last. A CR LF
/// never straddles two pieces.
template<class View, class Visit>
void forEachBreak(View units, Visit&& visit)
{
    for (qsizetype i = 0; i < units.size(); ++i) {
        if (!isControlBreak(units[i]))
            continue;
        const bool isPair = units[i] == u'\r' && i + 1 < units.size() && units[i + 1] == u'\n';
        visit(i, qsizetype(isPair ? 2 : 1));
        i += isPair;
    }
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
    const std::vector<TextRange> wrong = wrongBreaks(text, wanted, few);
    if (wrong.size() == few)
        return rebuilt(text, wanted);
    TextSnapshot result = text;
    const TextSnapshot replacement(wanted);
    for (auto range = wrong.rbegin(); range != wrong.rend(); ++range)
        result = result.replacing(*range, replacement);
    return result;
}

LineBreakCounts lineBreakCounts(const TextSnapshot& text)
{
    LineBreakCounts counts;
    text.forEachPiece(text.range(), [&](const TextPiece& piece) {
        std::visit(
            [&](auto units) {
                forEachBreak(units, [&](qsizetype index, qsizetype length) {
                    ++(length == 2 ? counts.crLf : units[index] == u'\r' ? counts.cr : counts.lf);
                });
            },
            piece.units);
    });
    counts.separators = text.lineCount() - 1 - counts.lf - counts.cr - counts.crLf;
    return counts;
}

} // namespace quillory
