#include "AppFixture.h"

#include "app/SaveFlow.h"
#include "document/Document.h"
#include "document/JournalReader.h"

#include <QDir>
#include <QTest>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillory {
namespace {

using Subject = MessageArea::Subject;
using test::AppFixture;

constexpr int aSecond = 1000;

class ExternalChangesTest : public AppFixture
{
protected:
    DocumentWindow& openText(const QByteArray& bytes = "one\n")
    {
        DocumentWindow& window = open(write("a.txt", bytes));
        // Painting starts the watch.
        (void)QTest::qWaitForWindowExposed(&window);
        QTest::qWait(settled);
        return window;
    }
    static bool says(DocumentWindow& window, const char* part)
    {
        return message(window, Subject::FileOnDisk).contains(QString::fromUtf8(part));
    }
    /// What the journal of the window would bring back without the file.
    JournalReader::Replay journalled(DocumentWindow& window)
    {
        const auto file =
            FileHandle::open(disk, JournalFile::pathOf(recovery, window.journal().id()), O_RDONLY);
        const auto replay =
            file ? JournalReader(disk, file->descriptor()).replay({}) : std::nullopt;
        EXPECT_TRUE(replay);
        return replay.value_or(JournalReader::Replay());
    }
    /// As most programs save: another file takes the place of the old one.
    void replace(const QByteArray& bytes) const
    {
        const QByteArray from = QFile::encodeName(write("a.new", bytes));
        ASSERT_EQ(std::rename(from.constData(), QFile::encodeName(path("a.txt")).constData()), 0);
    }

    static constexpr int settled = 300; ///< milliseconds; nothing more comes of what was
};

TEST_F(ExternalChangesTest, TextWithoutEditsFollowsTheFile)
{
    DocumentWindow& window = openText();
    write("a.txt", "two\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"two\n"; }, aSecond));
    replace("three\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"three\n"; }, aSecond));
    // Once more: the watch is on the file that is there now.
    write("a.txt", "four\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"four\n"; }, aSecond));
    waitUntilIdle(window);
    EXPECT_FALSE(window.document().isDocumentEdited());
    EXPECT_TRUE(message(window, Subject::FileOnDisk).isEmpty());
    press(window, {QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(textOf(window), u"three\n");
}

TEST_F(ExternalChangesTest, EditsAreKeptUntilTheUserDecides)
{
    DocumentWindow& window = openText();
    press(window, {QStringLiteral("'mine '")});
    write("a.txt", "theirs\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return says(window, "a.txt"); }, aSecond));
    EXPECT_EQ(textOf(window), u"mine one\n");
    ASSERT_TRUE(pressWayOut(window, QStringLiteral("Keep Mine")));
    EXPECT_FALSE(says(window, "a.txt"));
    save(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "mine one\n");

    press(window, {QStringLiteral("'more '")});
    write("a.txt", "theirs again\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return says(window, "a.txt"); }, aSecond));
    ASSERT_TRUE(pressWayOut(window, QStringLiteral("Reload")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"theirs again\n"; }, aSecond));
    EXPECT_FALSE(says(window, "a.txt"));
}

TEST_F(ExternalChangesTest, WhatIsNoChangeIsNotToldOf)
{
    DocumentWindow& window = openText();
    press(window, {QStringLiteral("'x'")});
    save(window); // the editor's own
    QTest::qWait(settled);
    press(window, {QStringLiteral("'y'")});
    const QByteArray file = QFile::encodeName(path("a.txt"));
    ASSERT_EQ(::utimensat(AT_FDCWD, file.constData(), nullptr, 0), 0);
    replace(bytesOf(path("a.txt")));
    QTest::qWait(settled + aSecond / 2);
    EXPECT_EQ(message(window, Subject::FileOnDisk), QString());
    EXPECT_EQ(textOf(window), u"xyone\n");
}

TEST_F(ExternalChangesTest, NameIsFollowedInItsFolder)
{
    DocumentWindow& window = openText();
    ASSERT_TRUE(QDir().rename(path("a.txt"), path("b.html")));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return window.document().path() == path("b.html"); }, aSecond));
    EXPECT_TRUE(window.windowTitle().startsWith(u"b.html"));
    EXPECT_EQ(window.document().record().definitionTitle, u"HTML");
    EXPECT_FALSE(window.document().isDocumentEdited());
    press(window, {QStringLiteral("'x'")});
    save(window);
    EXPECT_EQ(bytesOf(path("b.html")), "xone\n");
    EXPECT_FALSE(QFile::exists(path("a.txt")));
}

TEST_F(ExternalChangesTest, TextOfADeletedFileIsKept)
{
    DocumentWindow& window = openText();
    ASSERT_TRUE(QFile::remove(path("a.txt")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return says(window, "not there any more"); }, aSecond));
    EXPECT_TRUE(window.document().isDocumentEdited());
    const JournalReader::Replay kept = journalled(window);
    EXPECT_EQ(kept.text.string(), u"one\n");
    EXPECT_NE(kept.base, kept.text);
    ASSERT_TRUE(pressWayOut(window, QStringLiteral("Save")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(path("a.txt")); }, aSecond));
    waitUntilIdle(window);
    EXPECT_EQ(bytesOf(path("a.txt")), "one\n");
    EXPECT_FALSE(says(window, "not there"));

    // It is watched again.
    write("a.txt", "two\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"two\n"; }, aSecond));
}

TEST_F(ExternalChangesTest, FileThatComesBackIsFollowedAsBefore)
{
    for (const bool isEdited : {false, true}) {
        SCOPED_TRACE(isEdited);
        DocumentWindow& window = openText();
        ASSERT_TRUE(QDir().mkpath(path("elsewhere")));
        ASSERT_TRUE(QDir().rename(path("a.txt"), path("elsewhere/a.txt")));
        ASSERT_TRUE(QTest::qWaitFor([&] { return says(window, "not there"); }, aSecond));
        if (isEdited)
            press(window, {QStringLiteral("'x'")});
        ASSERT_TRUE(QDir().rename(path("elsewhere/a.txt"), path("a.txt")));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !says(window, "not there"); }, aSecond));
        EXPECT_EQ(window.document().isDocumentEdited(), isEdited);
        EXPECT_EQ(window.journal().id().isEmpty(), !isEdited);
        if (isEdited)
            continue;
        write("a.txt", "two\n");
        EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"two\n"; }, aSecond));
        EXPECT_EQ(message(window, Subject::FileOnDisk), QString());
        window.close();
    }
}

} // namespace
} // namespace quillory
