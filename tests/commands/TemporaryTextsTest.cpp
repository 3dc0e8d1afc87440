#include "commands/TemporaryTexts.h"

#include "foundation/Background.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <sys/stat.h>

namespace quillory {
namespace {

class TemporaryTextsTest : public ::testing::Test
{
protected:
    Result<QString> write(const QString& text, StringEncoding encoding = StringEncoding::utf8,
                          const QString& extension = QStringLiteral("txt"))
    {
        std::optional<Result<QString>> answer;
        texts->write(TextSnapshot(text), encoding, extension,
                     [&](const Result<QString>& path) { answer = path; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return answer.has_value(); }));
        return *answer;
    }

    QStringList files() const
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    static int modeOf(const QString& path)
    {
        struct stat found = {};
        return ::stat(QFile::encodeName(path).constData(), &found) == 0 ? found.st_mode & 0777 : -1;
    }

    QTemporaryDir home;
    QString folder = home.filePath(QStringLiteral("caches with spaces/Quillory"));
    std::unique_ptr<TemporaryTexts> texts = std::make_unique<TemporaryTexts>(folder);
};

TEST_F(TemporaryTextsTest, PathsAreNamedAfterTheSecondAndACounter)
{
    const QDateTime reference(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    const auto seconds = [&] { return reference.secsTo(QDateTime::currentDateTimeUtc()); };
    QStringList paths;
    qint64 before = 0;
    do { // until all of it falls into one second
        before = seconds();
        paths = {texts->temporaryPath(QStringLiteral("tex")),
                 texts->temporaryPath(QStringLiteral("tex"))};
        QFile taken(paths.front());
        ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
        paths += texts->temporaryPath(QStringLiteral("tex"));
        taken.remove();
    } while (seconds() != before);
    const QString name = QStringLiteral("%1/%2%3.tex").arg(folder).arg(before);
    EXPECT_EQ(paths, QStringList({name.arg(1), name.arg(1), name.arg(2)}));
    EXPECT_EQ(modeOf(folder), 0700);
    // A definition cannot lead the text elsewhere.
    EXPECT_EQ(QFileInfo(texts->temporaryPath(QStringLiteral("/../../x"))).path(), folder);
}

TEST_F(TemporaryTextsTest, HoldTheTextForTheUserAlone)
{
    const struct
    {
        QString text;
        StringEncoding encoding;
        QByteArray bytes;
    } cases[] = {
        {QStringLiteral("gr\u00fcn"), StringEncoding::utf8, "gr\xc3\xbcn"},
        {QStringLiteral("gr\u00fcn"), StringEncoding::isoLatin1, "gr\xfcn"},
        {QString(), StringEncoding::utf8, QByteArray()},
        {QString(3'000'000, u'x'), StringEncoding::utf8, QByteArray(3'000'000, 'x')},
    };
    for (const auto& [text, encoding, bytes] : cases) {
        const Result<QString> path = write(text, encoding);
        ASSERT_TRUE(path) << path.failure().message.toStdString();
        QFile file(*path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(file.readAll() == bytes) << text.left(10).toStdString();
        EXPECT_EQ(modeOf(*path), 0600);
    }
    EXPECT_EQ(files().size(), 4);
    for (int i = 0; i < 30; ++i)
        ASSERT_TRUE(write(QStringLiteral("x")));
    backgroundPool().waitForDone();
    EXPECT_EQ(files().size(), 16);
    texts.reset();
    backgroundPool().waitForDone();
    EXPECT_EQ(files(), QStringList());
}

TEST_F(TemporaryTextsTest, SayWhatCannotBeWrittenAndLeaveNothing)
{
    const Result<QString> unfit = write(QStringLiteral("\u20ac"), StringEncoding::isoLatin1);
    ASSERT_FALSE(unfit);
    EXPECT_TRUE(unfit.failure().message.contains(u'\u20ac'));
    EXPECT_EQ(files(), QStringList());

    texts = std::make_unique<TemporaryTexts>(QStringLiteral("/proc/nowhere"));
    const Result<QString> nowhere = write(QStringLiteral("x"));
    ASSERT_FALSE(nowhere);
    EXPECT_FALSE(nowhere.failure().message.isEmpty());
}

TEST_F(TemporaryTextsTest, LeaveNothingWhenTheDocumentClosesMeanwhile)
{
    texts->write(TextSnapshot(QString(1'000'000, u'x')), StringEncoding::utf8,
                 QStringLiteral("txt"), [](const Result<QString>&) { FAIL(); });
    texts.reset();
    backgroundPool().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(files(), QStringList());
}

TEST_F(TemporaryTextsTest, LeftoversOfACrashGoAfterSomeDays)
{
    ASSERT_TRUE(QDir().mkpath(folder));
    const auto leave = [&](const QString& name, int days) {
        QFile file(folder + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_TRUE(file.setFileTime(QDateTime::currentDateTime().addDays(-days),
                                     QFileDevice::FileModificationTime));
    };
    leave(QStringLiteral("7000000001.tex"), 4);
    leave(QStringLiteral(".text-a1B2c3"), 4);
    leave(QStringLiteral("7000000002.tex"), 1); // may be in use
    leave(QStringLiteral("colours.cache"), 400);
    const Result<QString> path = write(QStringLiteral("x"));
    ASSERT_TRUE(path);
    EXPECT_EQ(files(), QStringList({QStringLiteral("7000000002.tex"), QFileInfo(*path).fileName(),
                                    QStringLiteral("colours.cache")}));
}

} // namespace
} // namespace quillory
