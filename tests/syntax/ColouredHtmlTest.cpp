#include "syntax/ColouredHtml.h"

#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace quillory {
namespace {

ColouredText sample(const QString& string)
{
    std::array<OverlayAttributes, colourRoleCount> looks;
    looks[size_t(ColourRole::keyword)].foreground = Colour{1, 0, 0, 1};
    looks[size_t(ColourRole::autocomplete)].foreground = Colour{1, 0, 0, 1};
    looks[size_t(ColourRole::string)].foreground = Colour{0, 0.5F, 1, 0.25F};
    return {TextSnapshot(string),
            {{{1, 2}, ColourRole::keyword},
             {{3, 2}, ColourRole::autocomplete},
             {{6, 3}, ColourRole::comment}, // which has no colour
             {{9, 4}, ColourRole::string}},
            ColourRoles(looks),
            {}};
}

/// What a browser shows of \a html: the text inside "pre", and the runs that are styled.
QString shown(const QString& html, QStringList& styled)
{
    QString xml = html;
    xml.remove(QStringLiteral("<!DOCTYPE html>"));
    xml.replace(QStringLiteral("\"utf-8\">"), QStringLiteral("\"utf-8\"/>"));
    QXmlStreamReader reader(xml);
    QString text;
    QString style;
    bool inside = false;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            inside |= reader.name() == QStringLiteral("pre");
            style = reader.name() == QStringLiteral("span")
                        ? reader.attributes().at(0).value().toString()
                        : QString();
        } else if (token == QXmlStreamReader::EndElement) {
            inside &= reader.name() != QStringLiteral("pre");
            style.clear();
        } else if (token == QXmlStreamReader::Characters && inside) {
            text += reader.text();
            if (!style.isEmpty())
                styled += style + u'=' + reader.text();
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString() << html.toStdString();
    EXPECT_TRUE(text.startsWith(u'\n'));
    return text.mid(1); // which browsers leave out
}

TEST(ColouredHtmlTest, WritesTheTextAndItsColours)
{
    const QString text = QStringLiteral("\nif&a<b>c\"d é😀\n");
    const ColouredText coloured = sample(text);
    QString page;
    QTextStream out(&page);
    writeHtmlPage(out, coloured, QStringLiteral("<a & b>"));
    out.flush();
    QStringList styled;
    EXPECT_EQ(shown(page, styled), text);
    EXPECT_EQ(styled, QStringList({QStringLiteral("keyword=if"), QStringLiteral("keyword=&a"),
                                   QStringLiteral("string=\"d é")}));
    EXPECT_TRUE(page.contains(QStringLiteral("<title>&lt;a &amp; b&gt;</title>")));
    EXPECT_TRUE(page.contains(QStringLiteral(".string { color: rgba(0, 128, 255, 0.25); }")));

    styled.clear();
    EXPECT_EQ(shown(htmlFragment(coloured, {2, 8}, QStringLiteral("A 'b\" c")), styled),
              text.mid(2, 8));
    EXPECT_EQ(styled,
              QStringList({QStringLiteral("color: #ff0000=f"), QStringLiteral("color: #ff0000=&a"),
                           QStringLiteral("color: rgba(0, 128, 255, 0.25)=\"")}));
}

} // namespace
} // namespace quillory
