#include "view/TextViewAnnouncer.h"

#include "view/TextViewWidget.h"

#include <limits>

namespace quillory {

namespace {

constexpr TextOffset longestToldText = 16384; ///< of one edit, in UTF-16 code units
constexpr size_t mostToldEdits = 32;          ///< of one batch

int toInt(TextOffset offset)
{
    return int(std::min<TextOffset>(offset, std::numeric_limits<int>::max()));
}

QString beginningOf(const TextSnapshot& text, TextRange range)
{
    range.length = std::min(range.length, longestToldText);
    QString result = text.string(range);
    if (!result.isEmpty() && result.back().isHighSurrogate() && range.end() < text.length())
        result.chop(1);
    return result;
}

/// What leads from the text before \a first to the one after \a second.
TextChange composed(const TextChange& first, const TextChange& second)
{
    const TextOffset start = std::min(first.replaced.location, second.replaced.location);
    const TextOffset end = std::max(first.inserted().end(), second.replaced.end());
    return {TextRange::between(start, end - first.delta()), end - start + second.delta()};
}

bool goesOn(const TextChange& first, const TextChange& second)
{
    return second.replaced.location >= first.replaced.location &&
           second.replaced.end() <= first.inserted().end();
}

} // namespace

TextViewAnnouncer::TextViewAnnouncer(TextViewWidget& view) : m_view(view)
{
    QAccessible::installActivationObserver(this);
    begin(QAccessible::isActive());
}

TextViewAnnouncer::~TextViewAnnouncer()
{
    QAccessible::removeActivationObserver(this);
}

void TextViewAnnouncer::accessibilityActiveChanged(bool active)
{
    begin(active);
}

void TextViewAnnouncer::begin(bool active)
{
    m_active = active;
    const QPTextView& editor = m_view.editor();
    m_text = active ? editor.string() : TextSnapshot();
    m_before = {};
    m_edits.clear();
    m_told = editor.primarySelection();
    m_toldLine = editor.string().lineAt(m_told.head);
}

void TextViewAnnouncer::send(QAccessibleEvent& event)
{
    QAccessible::updateAccessibility(&event);
}

void TextViewAnnouncer::followEdit(const TextChange& change)
{
    if (!m_active)
        return;
    const TextSnapshot& text = m_view.editor().string();
    if (!m_text.isSameTree(text)) {
        m_before = std::exchange(m_text, text);
        m_shift = 0;
    }
    note({change, m_before, m_shift, m_text});
    m_shift += change.delta();
}

void TextViewAnnouncer::note(Edit edit)
{
    const bool joins = !m_edits.empty() && goesOn(m_edits.back().change, edit.change);
    if (!joins && m_edits.size() < mostToldEdits) {
        m_edits.push_back(std::move(edit));
        return;
    }
    while (!joins && m_edits.size() > 1) {
        const Edit last = std::move(m_edits.back());
        m_edits.pop_back();
        m_edits.back().change = composed(m_edits.back().change, last.change);
    }
    m_edits.back().change = composed(m_edits.back().change, edit.change);
    m_edits.back().after = std::move(edit.after);
}

void TextViewAnnouncer::editingEnded()
{
    if (!m_active)
        return;
    const std::vector<Edit> edits = std::exchange(m_edits, {});
    m_before = {};
    for (const Edit& edit : edits)
        tell(edit);
    tellSelection();
}

void TextViewAnnouncer::tell(const Edit& edit)
{
    const TextRange replaced = edit.change.replaced;
    const TextRange before{replaced.location - edit.shift, replaced.length};
    const QString removed = beginningOf(edit.before, before.clampedTo(edit.before.length()));
    const QString inserted = beginningOf(edit.after, edit.change.inserted());
    const int position = toInt(replaced.location);
    if (removed.isEmpty() && inserted.isEmpty())
        return;
    if (removed.isEmpty()) {
        QAccessibleTextInsertEvent event(&m_view, position, inserted);
        send(event);
    } else if (inserted.isEmpty()) {
        QAccessibleTextRemoveEvent event(&m_view, position, removed);
        send(event);
    } else {
        QAccessibleTextUpdateEvent event(&m_view, position, removed, inserted);
        send(event);
    }
}

void TextViewAnnouncer::selectionChanged()
{
    // During a batch the caret is told after the edits, of which one may not have come here yet.
    if (m_active && m_edits.empty() && m_text.isSameTree(m_view.editor().string()))
        tellSelection();
}

void TextViewAnnouncer::tellSelection()
{
    const QPTextView& editor = m_view.editor();
    const Selection now = editor.primarySelection();
    const Selection before = std::exchange(m_told, now);
    if (now.head != before.head) {
        QAccessibleTextCursorEvent event(&m_view, toInt(now.head));
        send(event);
    }
    const bool selected = !now.isCaret() || editor.selections().size() > 1;
    if (now != before && (selected || !before.isCaret())) {
        QAccessibleTextSelectionEvent event(&m_view, toInt(now.range().location),
                                            toInt(now.range().end()));
        send(event);
    }
    // A screen reader reads the line when the caret has moved in the view with the keyboard, and
    // would read it again for another value.
    const LineIndex line = m_text.lineAt(std::min(now.head, m_text.length()));
    if (std::exchange(m_toldLine, line) != line && !m_view.hasFocus()) {
        QAccessibleValueChangeEvent event(&m_view, qlonglong(line.value() + 1));
        send(event);
    }
}

} // namespace quillory
