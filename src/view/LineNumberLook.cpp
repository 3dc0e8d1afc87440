#include "view/LineNumberLook.h"

#include "view/Contrast.h"
#include "view/TextViewColours.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <algorithm>
#include <array>

namespace quillory {

namespace {

constexpr double miniSize = 9;         ///< points
constexpr double readableContrast = 3; ///< to 1
constexpr float labelShare = 0.6F;     ///< of the text's colour in that of its labels

const std::array keys{QStringLiteral("font"), QStringLiteral("textColor"),
                      QStringLiteral("alternateTextColor"), QStringLiteral("backgroundColor")};

QColor blended(const QColor& a, const QColor& b, float share)
{
    return QColor::fromRgbF(a.redF() * share + b.redF() * (1 - share),
                            a.greenF() * share + b.greenF() * (1 - share),
                            a.blueF() * share + b.blueF() * (1 - share));
}

} // namespace

QFont LineNumberLook::defaultFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::SmallestReadableFont);
    // The font itself is loaded only where its size is told in pixels.
    const double size = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
    font.setPointSizeF(std::min(miniSize, size));
    return font;
}

LineNumberLook LineNumberLook::beside(const TextViewColours& colours)
{
    LineNumberLook look;
    look.backgroundColor = colours.background;
    for (const QColor& candidate :
         {blended(colours.text, colours.background, labelShare), colours.text}) {
        if (contrast(look.textColor, colours.background) < readableContrast)
            look.textColor = candidate;
    }
    return look;
}

PropertyList::Dictionary LineNumberLook::encode() const
{
    PropertyList::Dictionary archive{{keys[0], font.toString()},
                                     {keys[1], textColor.name(QColor::HexArgb)},
                                     {keys[2], alternateTextColor.name(QColor::HexArgb)}};
    if (backgroundColor)
        archive.insert(keys[3], backgroundColor->name(QColor::HexArgb));
    return archive;
}

LineNumberLook LineNumberLook::decode(const PropertyList& archive)
{
    const PropertyList::Array inOrder = archive.toArray();
    const auto text = [&](size_t field) {
        return (inOrder.isEmpty() ? archive[keys[field]] : inOrder.value(qsizetype(field)))
            .toString();
    };
    const auto colour = [&](size_t field, const QColor& standard) {
        const QString name = text(field);
        return QColor::isValidColor(name) ? QColor(name) : standard;
    };
    LineNumberLook look;
    if (const QString name = text(0); !name.isEmpty())
        look.font.fromString(name);
    look.textColor = colour(1, look.textColor);
    look.alternateTextColor = colour(2, look.alternateTextColor);
    if (const QColor background = colour(3, {}); background.isValid())
        look.backgroundColor = background;
    return look;
}

} // namespace quillory
