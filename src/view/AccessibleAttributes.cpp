#include "view/AccessibleAttributes.h"

#include "editing/MarkedRanges.h"
#include "view/TextViewWidget.h"

#include <QFontInfo>

namespace quillory {

namespace {

constexpr TextOffset reach = 4096; ///< that a change of the looks is sought in, on either side

QString colourText(const QColor& colour)
{
    return QStringLiteral("rgb(%1,%2,%3)").arg(colour.red()).arg(colour.green()).arg(colour.blue());
}

QString colourText(const std::optional<Colour>& colour, const QColor& otherwise)
{
    return colourText(colour ? QColor::fromRgbF(colour->red, colour->green, colour->blue)
                             : otherwise);
}

/// A family's name in quotes; the notation knows no others, and gives these characters a meaning.
QString quoted(QString family)
{
    for (const QChar sign : QStringLiteral("\\:,=\";"))
        family.replace(sign, QStringLiteral("\\") + sign);
    return u'"' + family + u'"';
}

/// The run of \a overlay at \a offset, or the gap between two, and how far it reaches.
TextRange stretchAt(const Overlay& overlay, TextOffset offset, TextRange all)
{
    if (overlay.isEmpty())
        return all;
    const TextOffset start = std::max(all.location, offset - reach);
    TextRange result = TextRange::between(start, std::min(all.end(), offset + reach));
    for (const OverlayRun& run : overlay.runs(result)) {
        if (run.range.contains(offset))
            return run.range;
        if (run.range.end() <= offset)
            result = TextRange::between(run.range.end(), result.end());
        else
            return TextRange::between(result.location, run.range.location);
    }
    return result;
}

/// Cuts \a range down to the misspelt word at \a offset, or to where there is none; true in the
/// first case.
bool cutToMisspelt(const MarkedRanges& words, TextOffset offset, TextRange& range)
{
    for (const TextRange word : words.touching(range)) {
        if (word.contains(offset)) {
            range = range.intersection(word);
            return true;
        }
        range = word.end() <= offset
                    ? TextRange::between(std::max(range.location, word.end()), range.end())
                    : TextRange::between(range.location, std::min(range.end(), word.location));
    }
    return false;
}

} // namespace

AccessibleAttributes attributesAt(TextViewWidget& view, TextOffset offset)
{
    const QFontInfo font(view.textFont());
    const OverlayAttributes drawn = view.overlay().attributesAt(offset);
    const TextViewColours& colours = view.colours();
    QStringList parts{QStringLiteral("font-family:") + quoted(font.family()),
                      QStringLiteral("font-size:%1pt").arg(font.pointSizeF()),
                      QStringLiteral("font-weight:%1").arg(font.weight()),
                      QStringLiteral("font-style:") +
                          (font.italic() ? QStringLiteral("italic") : QStringLiteral("normal")),
                      QStringLiteral("color:") + colourText(drawn.foreground, colours.text),
                      QStringLiteral("background-color:") +
                          colourText(drawn.background, colours.background)};
    TextRange range = stretchAt(view.overlay(), offset, view.editor().string().range());
    if (view.misspelt() && cutToMisspelt(*view.misspelt(), offset, range))
        parts += QStringLiteral("invalid:spelling");
    return {parts.join(u';') + u';', range};
}

} // namespace quillory
