#include "text/Rebasing.h"

#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

/// Sequences of edits as commands make them: through the text in one direction, or anywhere.
class RandomEdits
{
public:
    TextOffset below(TextOffset n) { return TextOffset(m_engine() % unsigned(n)); }

    std::vector<TextChange> sequence(TextOffset length)
    {
        std::vector<TextChange> changes;
        const TextOffset way = below(3);
        TextOffset at = way == 1 ? length : 0;
        for (TextOffset left = below(8); left > 0; --left) {
            if (way == 0) {
                at = below(length + 1);
            } else if (way == 1) {
                at -= below(4);
            } else {
                at += below(4);
            }
            if (at < 0 || at > length)
                break;
            const TextOffset room = way == 1 ? at : length - at;
            const TextOffset replaced = std::min(below(4), room);
            at -= way == 1 ? replaced : 0;
            changes.push_back({{at, replaced}, below(4)});
            length += changes.back().delta();
            at += way == 2 ? changes.back().insertedLength : 0;
        }
        return changes;
    }

private:
    std::minstd_rand m_engine{5};
};

std::vector<TextEdit> asEdits(const std::vector<TextChange>& changes)
{
    std::vector<TextEdit> edits;
    for (const TextChange& change : changes)
        edits.push_back({change.replaced, TextSnapshot(QString(change.insertedLength, u'Z'))});
    return edits;
}

/// Letters are the old text's, "Z" those of deltas and "7" those of changes.
QString made(QString text, const std::vector<TextChange>& changes,
             const std::vector<TextEdit>& deltas, bool deltasFirst)
{
    const auto makeDeltas = [&] {
        for (const TextEdit& delta : deltas)
            text.replace(delta.range.location, delta.range.length, delta.replacement.string());
    };
    if (deltasFirst)
        makeDeltas();
    for (const TextChange& change : changes)
        text.replace(change.replaced.location, change.replaced.length,
                     QString(change.insertedLength, u'7'));
    if (!deltasFirst)
        makeDeltas();
    return text;
}

/// What does not depend on the order of edits that meet at one place.
QString sortedInside(QString text)
{
    std::sort(text.begin(), text.end());
    return text;
}

// All at once against each with each. Where several meet at one place either order is right.
TEST(Rebasing, ManyEditsAreRebasedAsOneAfterTheOther)
{
    const QString text = QStringLiteral("abcdefghijklmnopqrst");
    RandomEdits random;
    for (int round = 0; round < 30'000; ++round) {
        const std::vector<TextEdit> deltas = asEdits(random.sequence(text.size()));
        const std::vector<TextChange> changes = random.sequence(text.size());
        std::vector<TextEdit> rebasedDeltas = deltas;
        std::vector<TextChange> rebasedChanges = changes;
        for (TextChange& change : rebasedChanges) {
            for (TextEdit& delta : rebasedDeltas)
                rebase(delta, change);
        }
        const QString expected = made(text, changes, rebasedDeltas, false);
        ASSERT_EQ(made(text, rebasedChanges, deltas, true), expected) << "round " << round;

        rebasedDeltas = deltas;
        rebasedChanges = changes;
        rebase(rebasedDeltas, rebasedChanges);
        const QString actual = made(text, changes, rebasedDeltas, false);
        ASSERT_EQ(made(text, rebasedChanges, deltas, true), actual) << "round " << round;
        ASSERT_EQ(sortedInside(actual), sortedInside(expected)) << "round " << round;

        std::vector<Selection> selections;
        std::vector<Selection> expectedSelections;
        for (int i = 0; i < 3; ++i) {
            selections.push_back({random.below(text.size() + 1), random.below(text.size() + 1)});
            expectedSelections.push_back(selections.back());
            Selection& s = expectedSelections.back();
            for (const TextChange& change : changes)
                s = {mapped(s.anchor, change), mapped(s.head, change)};
        }
        ASSERT_EQ(mapped(selections, changes), expectedSelections) << "round " << round;
    }
}

} // namespace
} // namespace quillory
