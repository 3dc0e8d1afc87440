#include "foundation/ApplicationFolders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

QProcessEnvironment environment(std::initializer_list<std::pair<const char*, QString>> variables)
{
    QProcessEnvironment result;
    for (const auto& [name, value] : variables)
        result.insert(QLatin1String(name), value);
    return result;
}

TEST(ApplicationFolders, FollowTheBaseDirectories)
{
    const auto byDefault = ApplicationFolders::fromEnvironment(
        environment({{"HOME", QStringLiteral("/home/ann")}}), QStringLiteral("/opt/bin"));
    EXPECT_EQ(byDefault.applicationSupport, u"/home/ann/.local/share/Quillory");
    EXPECT_EQ(byDefault.caches, u"/home/ann/.cache/Quillory");
    EXPECT_EQ(byDefault.configuration, u"/home/ann/.config/Quillory");
    EXPECT_EQ(byDefault.state, u"/home/ann/.local/state/Quillory");
    EXPECT_EQ(byDefault.runtime, QString());
    EXPECT_EQ(byDefault.defaultsFile(), u"/home/ann/.config/Quillory/Quillory.conf");

    const auto set = ApplicationFolders::fromEnvironment(
        environment({{"HOME", QStringLiteral("/home/ann")},
                     {"XDG_DATA_HOME", QStringLiteral("/data/")},
                     {"XDG_CACHE_HOME", QStringLiteral("relative")},
                     {"XDG_CONFIG_HOME", QString()},
                     {"XDG_RUNTIME_DIR", QStringLiteral("/run/user/7")},
                     {"XDG_STATE_HOME", QStringLiteral("/state")}}),
        QStringLiteral("/opt/bin"));
    EXPECT_EQ(set.applicationSupport, u"/data/Quillory");
    EXPECT_EQ(set.caches, u"/home/ann/.cache/Quillory");
    EXPECT_EQ(set.configuration, u"/home/ann/.config/Quillory");
    EXPECT_EQ(set.state, u"/state/Quillory");
    EXPECT_EQ(set.runtime, u"/run/user/7/Quillory");
}

TEST(ApplicationFolders, FindTheResources)
{
    const QTemporaryDir root;
    const auto make = [&root](const char* name) {
        const QString folder = root.filePath(QLatin1String(name));
        EXPECT_TRUE(QDir().mkpath(folder));
        return folder;
    };
    const auto fill = [](const QString& folder) {
        QFile file(folder + QStringLiteral("/Encodings.plist"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    };
    const auto found = [](const QString& executableFolder, const QString& named = {}) {
        return ApplicationFolders::fromEnvironment(
                   named.isEmpty() ? environment({}) : environment({{"QUILLORY_RESOURCES", named}}),
                   executableFolder)
            .resources;
    };
    const QString built = make("source/build/release/src/app");
    const QString installed = make("prefix/bin");
    const QString fallback = found(installed);
    EXPECT_TRUE(fallback.endsWith(u"/share/quillory")) << qPrintable(fallback);
    EXPECT_EQ(found(built), fallback);

    const QString inSource = make("source/resources");
    const QString shared = make("prefix/share/quillory");
    fill(inSource);
    fill(shared);
    EXPECT_EQ(found(built), inSource);
    EXPECT_EQ(found(installed), shared);
    EXPECT_EQ(found(installed, inSource), inSource);
}

} // namespace
} // namespace quillory
