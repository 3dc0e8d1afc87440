#pragma once

#include "editing/MarkedRanges.h"
#include "editing/spelling/SpellChecker.h"
#include "editing/spelling/SpellingScope.h"

#include <QTimer>
#include <optional>

namespace quillory {

class QPTextView;

/// Finds the misspelt words among those in sight, when typing and scrolling have paused. The word
/// that is being typed at a caret is not told of before the caret has left it.
class PageSpelling : public QObject
{
    Q_OBJECT

public:
    // In milliseconds.
    static constexpr int typingPause = 300;
    static constexpr int scrollingPause = 100;

    /// Of what is in sight no more is looked at, in UTF-16 code units.
    static constexpr TextOffset longestPage = TextOffset(64) * 1024;
    /// So many misspelt words are remembered that are out of sight.
    static constexpr size_t rememberedRanges = 2000;

    /// What is asked for when a page is looked at.
    struct Page
    {
        std::function<std::vector<TextRange>()> stretches; ///< what is in sight, in order, apart
        std::function<SpellingScope()> scope;
    };

    /// All of the arguments outlive this.
    PageSpelling(QPTextView& editor, SpellChecker& checker, Page page, QObject* parent = nullptr);

    bool isEnabled() const { return m_enabled; }
    /// Off at first; switching it off forgets everything.
    void setEnabled(bool enabled);

    const MarkedRanges& misspelt() const { return m_misspelt; }
    /// The misspelt word at \a range, which may stand at its edges, and no further than it; none
    /// where there is no such word.
    std::optional<TextRange> misspeltAt(TextRange range) const;

    /// Looks at the page once \a pause milliseconds have passed without another call.
    void schedule(int pause = scrollingPause);

Q_SIGNALS:
    /// Words in \a range have become misspelt, or are no longer.
    void changed(quillory::TextRange range);

private:
    void check();
    void take(const std::vector<TextRange>& checked, const std::vector<TextRange>& found);
    void followEdit(const TextChange& change);
    void release();
    bool isBeingTyped(TextRange word) const;
    bool isTold(TextRange word) const;
    bool isAtCaret(TextRange word) const;

    QPTextView& m_editor;
    SpellChecker& m_checker;
    Page m_page;
    QTimer m_pause;
    bool m_enabled = false;
    bool m_checking = false; ///< a question is on its way
    bool m_outdated = false; ///< and another is to follow
    MarkedRanges m_misspelt;
    MarkedRanges m_held;              ///< misspelt, but still being typed
    std::optional<TextRange> m_typed; ///< where the last edits were
    bool m_sameEdit = false;          ///< edits that come now belong to those
};

} // namespace quillory
