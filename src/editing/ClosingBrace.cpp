#include "editing/ClosingBrace.h"

#include "editing/Blanks.h"
#include "text/BracketMatching.h"

namespace quillory {

namespace {

/// The indentation of the line that \a offset lies on.
TextSnapshot indentOfLineAt(const TextSnapshot& text, TextOffset offset)
{
    const TextOffset start = text.lineStart(text.lineAt(offset));
    return text.slice(
        TextRange::between(start, blanksEnd(text, TextRange::between(start, offset))));
}

/// Braces typed one after the other. Where what an earlier one made of the text matters, the text
/// with all of them is made; mostly the text as it was tells enough, and there may be thousands.
class ClosingBraces
{
public:
    explicit ClosingBraces(const TextSnapshot& text) : m_text(text), m_now(text) {}

    void typeAt(TextRange selected)
    {
        const TextOffset caret = selected.location;
        const TextOffset lineStart = m_text.lineStart(m_text.lineAt(caret));
        const TextRange before = TextRange::between(lineStart, caret);
        const bool isBlank = m_done < lineStart && blanksEnd(m_text, before) == caret;
        const auto indent = isBlank ? indentOfOpener(caret) : std::nullopt;
        if (!indent) {
            m_result.type(selected, m_brace);
        } else if (indent->isEmpty() && caret == m_text.length()) {
            m_result.unregistered = before;
            m_result.type({lineStart, 0}, m_brace);
        } else {
            m_result.type(before, indent->replacing({indent->length(), 0}, m_brace));
        }
        m_isDoneMatched = !isBlank || indent;
        m_done = m_result.edits.back().range.end();
    }

    SelectionEdits result() { return std::move(m_result); }

private:
    /// The indentation of the line with the "{" that a "}" at \a caret closes.
    std::optional<TextSnapshot> indentOfOpener(TextOffset caret)
    {
        // Up to the brace typed last nothing is new.
        const auto near =
            openerBefore(m_text, caret, curlyBrackets, std::max(m_done, TextOffset(0)));
        if (near && m_done < m_text.lineStart(m_text.lineAt(*near)))
            return indentOfLineAt(m_text, *near);
        if (!near && !m_isDoneMatched)
            return {};
        const auto opener = openerBefore(now(), caret + m_result.shift, curlyBrackets);
        return opener ? std::optional(indentOfLineAt(m_now, *opener)) : std::nullopt;
    }

    /// The text with the braces typed so far.
    const TextSnapshot& now()
    {
        std::vector<TextEdit> pending(m_result.edits.begin() + m_applied, m_result.edits.end());
        for (TextEdit& edit : pending)
            edit.range.location += m_appliedShift;
        m_now = m_now.replacing(pending);
        m_applied = ptrdiff_t(m_result.edits.size());
        m_appliedShift = m_result.shift;
        return m_now;
    }

    const TextSnapshot m_brace{u"}"};
    const TextSnapshot& m_text;
    SelectionEdits m_result;
    TextOffset m_done = -1;      ///< where the last edit ends
    bool m_isDoneMatched = true; ///< its brace may have an opener
    TextSnapshot m_now;          ///< the text with the first edits, m_applied of them
    ptrdiff_t m_applied = 0;
    TextOffset m_appliedShift = 0; ///< by those
};

} // namespace

SelectionEdits closingBraceEdits(const TextSnapshot& text, std::span<const Selection> selections)
{
    ClosingBraces braces(text);
    for (const Selection& selection : selections)
        braces.typeAt(selection.range());
    return braces.result();
}

} // namespace quillory
