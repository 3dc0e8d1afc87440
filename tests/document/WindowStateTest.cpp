#include "document/DocumentFixture.h"

#include "document/WindowState.h"

#include <QFile>

namespace quillory {
namespace {

using Dictionary = PropertyList::Dictionary;

const QString definition = QStringLiteral("selectedDefinition");
const QString encoding = QStringLiteral("selectedEncoding");
const QString lineBreaks = QStringLiteral("lbFormat");
const QString address = QStringLiteral("baseURL");

class WindowStateTest : public test::DocumentFixture
{
protected:
    std::unique_ptr<Document> document = openNew();

    qsizetype indexOf(const char* title)
    {
        return document->syntaxColouring().definitions().indexForTitle(QString::fromUtf8(title));
    }
};

TEST_F(WindowStateTest, ComesBackInAnotherDocument)
{
    document->syntaxColouring().selectDefinition(indexOf("HTML"));
    document->encodingsArrayController().selectIndex(2);
    document->record().lbFormat = 3;
    document->record().baseURL = QStringLiteral("http://example.org/");
    const Dictionary state = willEncodeRestorableState(*document);
    EXPECT_EQ(state.keys(), QStringList({address, lineBreaks, definition, encoding}));
    EXPECT_EQ(state[definition], PropertyList(qint64(indexOf("HTML"))));

    const auto other = openNew();
    didDecodeRestorableState(*other, state);
    EXPECT_EQ(willEncodeRestorableState(*other), state);
    // The definition's switches come with it.
    EXPECT_EQ(other->record().definitionTitle, u"HTML");
    EXPECT_TRUE(other->record().canCloseTags);
    EXPECT_FALSE(other->record().isTextDefinition);
}

TEST_F(WindowStateTest, WhatIsAbsentOrOutsideChangesNothing)
{
    document->record().baseURL = QStringLiteral("http://example.org/");
    const Dictionary before = willEncodeRestorableState(*document);
    for (const Dictionary& state : {Dictionary{}, Dictionary{{definition, 9999}, {encoding, 9999}},
                                    Dictionary{{definition, -1}, {encoding, -1}},
                                    Dictionary{{QStringLiteral("another"), 1}}}) {
        didDecodeRestorableState(*document, state);
        EXPECT_EQ(willEncodeRestorableState(*document), before);
    }
}

TEST_F(WindowStateTest, EncodingsAreReadAnew)
{
    QFile list(folders.applicationSupport + QStringLiteral("/Encodings.plist"));
    ASSERT_TRUE(list.open(QFile::WriteOnly));
    list.write("({number = 4; name = a;}, {number = 5; name = b;})");
    list.close();
    didDecodeRestorableState(*document, {{encoding, 1}});
    EXPECT_EQ(document->encodingsArrayController().selected()->number, StringEncoding::isoLatin1);
}

} // namespace
} // namespace quillory
