#include "app/StartOptions.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

using Action = StartOptions::Action;

StartOptions parse(const QStringList& arguments)
{
    const auto exists = [](const QString& path) {
        return path == QStringLiteral("odd:7") || path == QStringLiteral("notes");
    };
    return parseStartOptions(QStringList{QStringLiteral("quillory")} + arguments, exists);
}

QStringList words(const char* line)
{
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

TEST(StartOptionsTest, findsFilesAndPlaces)
{
    struct
    {
        const char* line;
        std::vector<OpenTarget> targets;
    } const cases[]{
        {"", {}},
        {"notes", {{QStringLiteral("notes"), {}}}},
        {"notes:12", {{QStringLiteral("notes"), TextPlace{12, 1}}}},
        {"notes:12:5", {{QStringLiteral("notes"), TextPlace{12, 5}}}},
        {"notes:12:5:", {{QStringLiteral("notes"), TextPlace{12, 5}}}},
        {"fresh:3", {{QStringLiteral("fresh"), TextPlace{3, 1}}}},
        {"odd:7", {{QStringLiteral("odd:7"), {}}}},
        {"odd:7:2", {{QStringLiteral("odd"), TextPlace{7, 2}}}},
        {"notes:0", {{QStringLiteral("notes:0"), {}}}},
        {"notes:99999999999999999999", {{QStringLiteral("notes:99999999999999999999"), {}}}},
        {"a:b:4", {{QStringLiteral("a:b"), TextPlace{4, 1}}}},
        {":4", {{QStringLiteral(":4"), {}}}},
        {"--line 4 notes fresh",
         {{QStringLiteral("notes"), TextPlace{4, 1}}, {QStringLiteral("fresh"), {}}}},
        {"notes --line=4:8", {{QStringLiteral("notes"), TextPlace{4, 8}}}},
        {"-", {{QStringLiteral("-"), {}}}},
        {"-- --line", {{QStringLiteral("--line"), {}}}},
        {"file:///tmp/a%20b", {{QStringLiteral("/tmp/a b"), {}}}},
    };
    for (const auto& c : cases) {
        const StartOptions line = parse(words(c.line));
        EXPECT_EQ(line.action, Action::Open) << c.line;
        EXPECT_EQ(line.targets, c.targets) << c.line;
    }
}

TEST(StartOptionsTest, answersAndRefuses)
{
    struct
    {
        const char* line;
        Action action;
        const char* says;
    } const cases[]{
        {"--help", Action::ShowHelp, "--line LINE"},
        {"-h notes", Action::ShowHelp, "Usage"},
        {"--version", Action::ShowVersion, QUILLORY_VERSION},
        {"--bogus", Action::Refuse, "bogus"},
        {"--line", Action::Refuse, "line"},
        {"--line x notes", Action::Refuse, "“x”"},
        {"--line 0 notes", Action::Refuse, "“0”"},
        {"--line 4:0 notes", Action::Refuse, "“4:0”"},
        {"--line 4", Action::Refuse, "file"},
        {"--wait", Action::Refuse, "file"},
        {"--render out.png notes", Action::Render, ""},
    };
    for (const auto& c : cases) {
        const StartOptions line = parse(words(c.line));
        EXPECT_EQ(line.action, c.action) << c.line;
        EXPECT_TRUE(line.text.contains(QString::fromUtf8(c.says))) << c.line;
    }
    EXPECT_EQ(parse({QString()}).action, Action::Refuse);
}

} // namespace
} // namespace quillory
