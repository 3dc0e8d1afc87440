#include "ViewHarness.h"

#include "text/TextBoundary.h"

#include <QTest>

namespace quillory {

namespace {

struct ClusterCase
{
    const char* name;
    QString text;
    int characters;
};

const ClusterCase clusterCases[] = {
    {"marks", QStringLiteral("e\u0301\u0323o\u0308x"), 3},
    {"markAlone", QStringLiteral("\u0301ab"), 3},
    {"joinedEmoji", QString::fromUtf8("a\U0001F468\u200D\U0001F469\u200D\U0001F467b"), 3},
    {"skinTone", QString::fromUtf8("\U0001F44D\U0001F3FD!"), 2},
    {"flags", QString::fromUtf8("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7x"), 3},
    {"keycap", QStringLiteral("1\uFE0F\u20E32"), 2},
    {"variants", QStringLiteral("\u2764\uFE0Fx"), 2},
    {"devanagari", QStringLiteral("\u0915\u093F\u0928\u0947 "), 3},
    {"conjunct", QStringLiteral("\u0915\u094D\u0937\u093Fa"), 2},
    {"tamil", QStringLiteral("\u0BA8\u0BBF\u0B95\u0BCD"), 2},
    {"thai", QStringLiteral("\u0E01\u0E33\u0E19\u0E49"), 2},
    {"jamo", QStringLiteral("\u1112\u1161\u11AB\u1100\u1173\u11AF"), 2},
    {"hebrewPoints", QStringLiteral("\u05E9\u05C1\u05B8\u05DC"), 2},
    {"lamAlef", QStringLiteral("\u0633\u0644\u0627\u0645"), 4},
    {"nonJoiner", QStringLiteral("\u0645\u06CC\u200C\u062E"), 3},
};

class CharacterStops : public testing::TestWithParam<ClusterCase>
{};

TEST_P(CharacterStops, areTheSameForKeysAndClicks)
{
    ViewHarness harness(GetParam().text);
    const TextSnapshot text = harness.storage.snapshot();
    const auto head = [&] { return harness.editor.primarySelection().head; };
    const bool rightToLeft = GetParam().text.isRightToLeft();
    const QString forward = rightToLeft ? QStringLiteral("Left") : QStringLiteral("Right");
    std::vector<TextOffset> stops{0};
    while (stops.back() < text.length() && stops.size() < 20) {
        harness.press({forward});
        ASSERT_GT(head(), stops.back());
        stops.push_back(head());
    }
    EXPECT_EQ(stops.size(), size_t(GetParam().characters) + 1);
    const QString back = rightToLeft ? QStringLiteral("Right") : QStringLiteral("Left");
    for (size_t stop = stops.size() - 1; stop-- > 0;) {
        harness.press({back});
        EXPECT_EQ(head(), stops[stop]);
    }
    const auto isStop = [&](TextOffset offset) {
        return std::find(stops.begin(), stops.end(), offset) != stops.end();
    };
    const int y = harness.view.caretRect().center().y();
    for (int x = 0; x < harness.view.viewport()->width(); x += 1)
        ASSERT_TRUE(isStop(harness.view.offsetAtPoint({x, y}))) << x;
    // Delete removes whole ones from the front, wherever a click has put the caret.
    harness.press({QStringLiteral("Home"), QStringLiteral("Del")});
    EXPECT_EQ(harness.storage.length(), text.length() - stops[1]);
}

INSTANTIATE_TEST_SUITE_P(Table, CharacterStops, testing::ValuesIn(clusterCases),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace

} // namespace quillory
