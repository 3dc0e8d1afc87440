#include "EventLoopWatchdog.h"
#include "ViewHarness.h"

#include <QScrollBar>
#include <QTest>
#include <random>

namespace quillory {

namespace {

struct HostileCase
{
    const char* name;
    QString text;
    int times = 1; ///< that it stands in a row
};

QString controls()
{
    QString all;
    for (char16_t unit = 0; unit < 0xA0; ++unit)
        all += QChar(unit);
    return all +
           QStringLiteral("\u200B\u200E\u202A\u202E\u2066\u2069\u2028\u2029\uFEFF\uFFFC\uFFFF");
}

QString noise(qsizetype units)
{
    std::mt19937 random(5);
    QString text;
    text.reserve(units);
    while (text.size() < units)
        text += QChar(char16_t(random() % 0x10000));
    return text;
}

QString directions(qsizetype units)
{
    const QString controls = QStringLiteral(
        "\u200E\u200F\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069a\u05D01 ");
    std::mt19937 random(7);
    QString text;
    text.reserve(units);
    while (text.size() < units)
        text += controls[qsizetype(random() % uint(controls.size()))];
    return text;
}

const HostileCase hostileCases[] = {
    {"hundredMillionUnitsInOneLine", repeated(QStringLiteral("{\"key\": 12345}, "), 1'000'000),
     100},
    {"arabicLine", repeated(QStringLiteral("\u0627\u0644\u0639\u0631\u0628\u064a\u0629 "), 50'000),
     100},
    {"mixedLine",
     repeated(QStringLiteral("\u05e9\u05dc\u05d5\u05dd one\t\u65e5\u672c 12 e\u0301 "), 50'000),
     100},
    {"openIsolates", QString(500'000, QChar(0x2067))},
    {"oneLine", repeated(QStringLiteral("{\"key\": 12345}, "), 3'000'000)},
    {"oneWord", QString(2'000'000, u'x')},
    {"combiningMarks", QString(2'000'000, QChar(0x0301))},
    {"joiners", repeated(QStringLiteral("\U0001F468\u200D"), 1'000'000)},
    {"nul", QString(1'000'000, QChar(0))},
    {"unpairedSurrogates", QString(500'000, QChar(0xDC00)) + QString(500'000, QChar(0xD800))},
    {"emptyLines", QString(1'000'000, u'\n')},
    {"carriageReturns", QString(1'000'000, u'\r')},
    {"controls", controls().repeated(2000)},
    {"tabs", QString(1'000'000, u'\t')},
    {"rightToLeft", repeated(QStringLiteral("\u05e9\u05dc\u05d5\u05dd "), 500'000)},
    {"noise", noise(1'000'000)},
};

TEST(HostileSelection, inBothDirectionsNeverStopsTheEventLoop)
{
    for (const bool wraps : {false, true}) {
        ViewHarness harness(directions(500'000));
        harness.view.setWrapLines(wraps);
        harness.settle();
        EventLoopWatchdog watchdog;
        for (const char* key : {"Shift+Down", "Left", "Right", "Ctrl+Home", "Shift+End", "Ctrl+A"})
            watchdog.watch(key, [&] { harness.press({QString::fromLatin1(key)}); });
    }
}

class HostileText : public testing::TestWithParam<std::tuple<HostileCase, bool /*wraps*/>>
{};

TEST_P(HostileText, neverStopsTheEventLoop)
{
    const auto& [row, wraps] = GetParam();
    ViewHarness harness;
    harness.view.setWrapLines(wraps);
    harness.settle();
    const std::vector<TextEdit> copies(size_t(row.times), TextEdit{{}, TextSnapshot(row.text)});
    const TextSnapshot text = TextSnapshot().replacing(copies);
    // The first use of a font for a script loads it, which is not what is watched here.
    harness.storage.replaceCharactersInRange({}, row.text.left(500));
    harness.settle();

    EventLoopWatchdog watchdog;
    watchdog.watch("setting the text", [&] {
        harness.storage.replaceCharactersInRange(harness.storage.snapshot().range(), text);
        harness.settle();
    });
    const auto press = [&](const char* key) {
        watchdog.watch(key, [&] { harness.press({QString::fromLatin1(key)}); });
    };
    for (const char* key :
         {"'x'", "Down", "PgDown", "End", "'y'", "Home", "Shift+Down", "Ctrl+End", "'z'", "PgUp",
          "Up", "Left", "Shift+Left", "Backspace", "Home", "'u'", "Ctrl+Home", "Return"})
        press(key);
    for (QScrollBar* bar : {harness.view.verticalScrollBar(), harness.view.horizontalScrollBar()}) {
        for (const double share : {0.3, 0.99, 0.5}) {
            watchdog.watch("scrolling", [&] {
                bar->setValue(int(bar->maximum() * share));
                harness.settle();
            });
        }
    }
    const TextOffset inSight = harness.view.offsetAtPoint({300, 100});
    harness.editor.setSelectedRange({inSight, 0});
    press("'m'");
    press("Delete");
    watchdog.watch("resizing", [&] {
        harness.view.resize(600, 400);
        harness.settle();
    });
    // Whatever the text is, the view has not changed it.
    while (harness.undo.canUndo())
        harness.view.commands().undo();
    EXPECT_TRUE(harness.storage.snapshot() == text);
}

INSTANTIATE_TEST_SUITE_P(Table, HostileText,
                         testing::Combine(testing::ValuesIn(hostileCases), testing::Bool()),
                         [](const auto& instance) {
                             return std::string(std::get<0>(instance.param).name) +
                                    (std::get<1>(instance.param) ? "Wrapped" : "");
                         });

} // namespace

} // namespace quillory
