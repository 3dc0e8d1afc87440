#include "view/PrintedText.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace quillory {
namespace {

constexpr double scale = 2; // pixels a point

PrintedText::Form form(double width, double height)
{
    QFont font(QStringLiteral("DejaVu Sans Mono"));
    font.setPointSizeF(10);
    return {.font = font, .area = {width, height}};
}

struct Paginated : PrintedText
{
    Paginated(const QString& text, const Form& form) : PrintedText(TextSnapshot(text), form)
    {
        EXPECT_TRUE(paginate([](double) { return true; }));
    }
};

QString lines(int count)
{
    QString text;
    for (int i = 1; i <= count; ++i)
        text += QStringLiteral("line %1\n").arg(i);
    return text;
}

/// The pages hold all of the text, one after the other.
void expectWhole(const PrintedText& printed, TextOffset length)
{
    TextOffset end = 0;
    for (int page = 0; page < printed.pageCount(); ++page) {
        const TextRange range = printed.rangeOfPage(page);
        EXPECT_EQ(range.location, end) << page;
        EXPECT_TRUE(!range.isEmpty() || length == 0) << page;
        end = range.end();
    }
    EXPECT_EQ(end, length);
}

QImage painted(PrintedText& printed, int page, const std::vector<PrintedText::Ink>& inks = {})
{
    QImage image(int(300 * scale), int(120 * scale), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    printed.paintPage(painter, page, inks);
    return image;
}

/// The part of \a image that is not white.
QRect inked(const QImage& image, const std::function<bool(QRgb)>& counts = {})
{
    QRect rect;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (const QRgb pixel = image.pixel(x, y);
                counts ? counts(pixel) : pixel != qRgb(255, 255, 255))
                rect |= QRect(x, y, 1, 1);
    return rect;
}

TEST(PrintedText, IsDividedIntoPages)
{
    const struct
    {
        QString text;
        const char* what;
    } cases[] = {{QString(), "nothing"},
                 {lines(500), "lines"},
                 {lines(500).chopped(1), "lines without a last break"},
                 {QString(20000, u'x'), "a long line"},
                 {QString(200, u'\n'), "empty lines"},
                 {QStringLiteral("\u05d0\u05d1 12 ").repeated(3000), "from right to left"}};
    for (const auto& [text, what] : cases) {
        SCOPED_TRACE(what);
        expectWhole(Paginated(text, form(300, 120)), text.size());
    }
    EXPECT_EQ(Paginated(QString(), form(300, 120)).pageCount(), 1);
}

TEST(PrintedText, NeedsNoPageForWhatIsBehindTheLastBreak)
{
    const Paginated many(lines(500), form(300, 120));
    const TextRange first = many.rangeOfPage(0);
    const int rows = int(lines(500).left(first.length).count(u'\n'));
    EXPECT_EQ(Paginated(lines(rows), form(300, 120)).pageCount(), 1);
    EXPECT_EQ(Paginated(lines(rows + 1), form(300, 120)).pageCount(), 2);
    EXPECT_EQ(many.pageCount(), (500 + rows - 1) / rows);
}

TEST(PrintedText, PaintsWholeRowsInsideThePage)
{
    Paginated printed(QStringLiteral("Ägj\n").repeated(100), form(300, 120));
    const QRect first = inked(painted(printed, 0));
    EXPECT_GE(first.top(), 0);
    EXPECT_LT(first.bottom(), int(120 * scale) - 1) << "the last row is cut";
    EXPECT_EQ(inked(painted(printed, 1)), first);
}

TEST(PrintedText, PaintsInColoursAndNumbers)
{
    const auto isRed = [](QRgb pixel) { return qRed(pixel) > 200 && qGreen(pixel) < 100; };
    Paginated plain(lines(40), form(300, 120));
    const TextRange second = plain.rangeOfPage(1);
    const QImage coloured =
        painted(plain, 1, {{{0, 2}, qRgb(0, 0, 255)}, {{second.location, 4}, qRgb(255, 0, 0)}});
    const QRect red = inked(coloured, isRed);
    EXPECT_FALSE(red.isEmpty());
    EXPECT_LT(red.bottom(), int(20 * scale)) << "only the first row is red";

    PrintedText::Form numbered = form(300, 120);
    numbered.lineNumbers = true;
    Paginated withNumbers(lines(40), numbered);
    EXPECT_GT(inked(painted(withNumbers, 0)).right(), inked(painted(plain, 0)).right());
}

TEST(PrintedText, CanBeGivenUp)
{
    PrintedText printed(TextSnapshot(lines(20000)), form(300, 120));
    int reports = 0;
    EXPECT_FALSE(printed.paginate([&](double share) {
        EXPECT_GT(share, 0);
        EXPECT_LT(share, 1);
        return ++reports < 3;
    }));
    EXPECT_EQ(reports, 3);
}

} // namespace
} // namespace quillory
