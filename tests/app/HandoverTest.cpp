#include "app/Handover.h"

#include "app/RunningInstance.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quillory {
namespace {

OpenTarget target(const QString& path, std::optional<TextPlace> place = {})
{
    return {path, place};
}

TEST(Handover, ComesAsItWasSentInWhateverPieces)
{
    const QString odd = QStringLiteral("/a b\n\u00e9") + QChar(0xD800);
    for (const Handover& sent :
         {Handover{},
          Handover{{target(odd), target(QStringLiteral("/b"), TextPlace{3, 4})}, true, "t"},
          Handover{{target(QStringLiteral("/c"), TextPlace{1LL << 40, 1})}, false, ""}}) {
        const QByteArray request = encode(sent);
        bool broken = true;
        for (qsizetype length = 0; length < request.size(); ++length) {
            EXPECT_FALSE(decode(request.left(length), broken)) << length;
            EXPECT_FALSE(broken) << length;
        }
        EXPECT_EQ(decode(request, broken), sent);
        EXPECT_FALSE(broken);
    }
}

TEST(Handover, RefusesWhatMakesNoSense)
{
    QByteArray tooMany = encode({{}, false, {}});
    tooMany[tooMany.size() - 1] = 1; // a target that is not there
    QByteArray withMore = encode({{}, false, {}}) + '\0';
    withMore[3] = char(withMore[3] + 1);
    for (const QByteArray& request : {QByteArray("\xFF\xFF\xFF\xFF"), tooMany, withMore}) {
        bool broken = false;
        EXPECT_FALSE(decode(request, broken));
        EXPECT_TRUE(broken);
    }
}

TEST(RunningInstance, IsOneOnAScreen)
{
    const QTemporaryDir root;
    const QString folder = root.filePath(QStringLiteral("Quillory"));
    const QString screen = QStringLiteral(":0");
    auto first = std::make_unique<RunningInstance>(folder, screen);
    EXPECT_TRUE(first->isThis());
    RunningInstance second(folder, screen);
    EXPECT_FALSE(second.isThis());
    EXPECT_LT(second.takeListeningSocket(), 0);
    EXPECT_TRUE(RunningInstance(folder, QStringLiteral(":1")).isThis());

    // What lies there after its end does not keep the next one from running.
    first.reset();
    second.claim();
    EXPECT_TRUE(second.isThis());
    const int socket = second.takeListeningSocket();
    EXPECT_GE(socket, 0);
    ::close(socket);
    EXPECT_FALSE(RunningInstance(folder, screen).isThis());
}

TEST(RunningInstance, RunsAloneWhereOthersCouldEnterTheFolder)
{
    const QTemporaryDir root;
    QFile::setPermissions(root.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                           QFile::ReadOther | QFile::ExeOther);
    for (const QString& folder : {root.path(), QString(), root.filePath(QString(200, u'x'))}) {
        RunningInstance first(folder, QStringLiteral(":0"));
        RunningInstance second(folder, QStringLiteral(":0"));
        EXPECT_TRUE(first.isThis() && second.isThis()) << qUtf8Printable(folder);
        EXPECT_LT(first.takeListeningSocket(), 0);
    }
}

} // namespace
} // namespace quillory
