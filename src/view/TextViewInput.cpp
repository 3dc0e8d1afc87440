#include "view/TextViewInput.h"

#include "editing/QPTextView.h"
#include "view/PreeditPlace.h"
#include "view/TextViewWidget.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QMouseEvent>
#include <limits>

namespace quillory {

namespace {

// An input method is shown the caret's line, of a long one at most so much on either side.
constexpr TextOffset surroundingReach = 1000;

int toInt(TextOffset offset)
{
    return int(std::clamp<TextOffset>(offset, 0, std::numeric_limits<int>::max()));
}

/// \a offset, or the place before the surrogate pair that it lies inside.
TextOffset unsplit(const TextSnapshot& text, TextOffset offset)
{
    const bool inside = offset > 0 && offset < text.length() &&
                        QChar::isHighSurrogate(text.at(offset - 1)) &&
                        QChar::isLowSurrogate(text.at(offset));
    return inside ? offset - 1 : offset;
}

/// Up to surroundingReach on either side of \a head, as far as \a limits go.
TextRange around(const TextSnapshot& text, TextOffset head, TextRange limits)
{
    const TextOffset start = std::max(limits.location, head - surroundingReach);
    const TextOffset end = std::max(head, std::min(limits.end(), head + surroundingReach));
    return TextRange::between(unsplit(text, start), unsplit(text, end));
}

TextRange surrounding(const QPTextView& editor)
{
    const TextSnapshot& text = editor.string();
    const TextOffset head = editor.primarySelection().head;
    return around(text, head, text.lineContent(text.lineAt(head)));
}

/// What a commit takes the place of: the selected text, and what the input method names by its
/// distance from the caret that would stand there if the selected text were gone.
TextRange replacedBy(const QInputMethodEvent& event, TextRange selected, const TextSnapshot& text)
{
    if (event.replacementStart() == 0 && event.replacementLength() == 0)
        return selected;
    const TextOffset base = selected.location;
    const auto place = [&](TextOffset distance) {
        const TextOffset offset = base + distance + (distance > 0 ? selected.length : 0);
        return unsplit(text, std::clamp<TextOffset>(offset, 0, text.length()));
    };
    const TextOffset start = place(event.replacementStart());
    const TextOffset end = place(event.replacementStart() + event.replacementLength());
    if (selected.isEmpty())
        return TextRange::between(start, end);
    return TextRange::between(std::min(start, base), std::max(end, selected.end()));
}

} // namespace

QPTextView& TextViewInput::editor() const
{
    return m_view.editor();
}

bool TextViewInput::isComposing() const
{
    return !m_view.textGeometry().preedit().text.isEmpty();
}

void TextViewInput::handle(const QInputMethodEvent& event)
{
    const bool wasComposing = isComposing();
    m_view.setPreedit({});
    const bool commits = !event.commitString().isEmpty() || event.replacementLength() > 0;
    const bool idle = !wasComposing && !commits && event.preeditString().isEmpty() &&
                      event.attributes().isEmpty();
    if (idle || !editor().isEditable())
        return;
    TextStorage& storage = editor().textStorage();
    storage.beginEditing();
    if (commits || event.preeditString().isEmpty())
        restoreSelection();
    if (commits)
        commit(event);
    setSelection(event);
    if (!event.preeditString().isEmpty())
        clearSelection();
    storage.endEditing();
    setStyle(event);
    m_view.setPreedit({editor().primarySelection().head, event.preeditString()});
    m_view.showCaret();
    showPreeditCaret();
}

void TextViewInput::commit(const QInputMethodEvent& event)
{
    const std::vector<Selection>& selections = editor().selections();
    const size_t primary = size_t(&editor().primarySelection() - selections.data());
    std::vector<Selection> targets;
    targets.reserve(selections.size());
    for (const Selection& selection : selections)
        targets.push_back(Selection::over(replacedBy(event, selection.range(), editor().string())));
    editor().setSelections(std::move(targets), primary);
    editor().insertText(event.commitString());
}

void TextViewInput::clearSelection()
{
    const auto& selections = editor().selections();
    if (std::all_of(selections.begin(), selections.end(), std::mem_fn(&Selection::isCaret)))
        return;
    editor().deleteSelection();
    m_cleared = editor().string();
}

/// Where the text was edited in between, nothing can be brought back.
void TextViewInput::restoreSelection()
{
    const std::optional<TextSnapshot> cleared = std::exchange(m_cleared, {});
    if (cleared && cleared->isSameTree(editor().string()))
        editor().undo();
}

void TextViewInput::setStyle(const QInputMethodEvent& event)
{
    const int length = int(event.preeditString().size());
    m_style = {};
    m_style.caret = length;
    for (const QInputMethodEvent::Attribute& attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor) {
            m_style.caret = std::clamp(attribute.start, 0, length);
            m_style.caretShown = attribute.length > 0 || length == 0;
            m_style.caretColour = attribute.value.value<QColor>();
        } else if (attribute.type == QInputMethodEvent::TextFormat) {
            const int start = std::min(attribute.start, attribute.start + attribute.length);
            m_style.formats.push_back({start, std::abs(attribute.length),
                                       attribute.value.value<QTextFormat>().toCharFormat()});
        }
    }
    std::stable_sort(m_style.formats.begin(), m_style.formats.end(),
                     [](const auto& a, const auto& b) { return a.start < b.start; });
}

/// A selection that the input method wants counts from the beginning of the surrounding text.
void TextViewInput::setSelection(const QInputMethodEvent& event)
{
    for (const QInputMethodEvent::Attribute& attribute : event.attributes()) {
        if (attribute.type != QInputMethodEvent::Selection)
            continue;
        const TextSnapshot& text = editor().string();
        const TextOffset start = surrounding(editor()).location + attribute.start;
        const auto place = [&](TextOffset offset) {
            return unsplit(text, std::clamp<TextOffset>(offset, 0, text.length()));
        };
        editor().setSelection({place(start), place(start + attribute.length)});
    }
}

void TextViewInput::followCaret()
{
    if (!isComposing())
        return;
    const TextOffset head = std::min(editor().primarySelection().head, editor().string().length());
    const Preedit& preedit = m_view.textGeometry().preedit();
    if (preedit.offset != head)
        m_view.setPreedit({head, preedit.text});
}

bool TextViewInput::takesMouse(const QMouseEvent& event)
{
    if (!isComposing())
        return false;
    if (const auto index = preeditIndexAt(m_view.textViewport(), event.position().toPoint())) {
        if (event.type() == QEvent::MouseButtonRelease)
            QGuiApplication::inputMethod()->invokeAction(QInputMethod::Click, *index);
        return true;
    }
    if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick)
        finish();
    return false;
}

void TextViewInput::finish()
{
    if (!isComposing())
        return;
    QGuiApplication::inputMethod()->commit();
    if (isComposing())
        handle(QInputMethodEvent());
}

/// Long composed text may reach out of the view.
void TextViewInput::showPreeditCaret()
{
    if (!isComposing())
        return;
    TextViewport& viewport = m_view.textViewport();
    const QSize size = viewport.size();
    for (int rows = size.height() / viewport.rowHeight(); rows > 0; --rows) {
        const auto caret = preeditPoint(viewport, m_style.caret);
        if (caret && caret->y() + viewport.rowHeight() <= size.height()) {
            const double right = caret->x() + 2 * TextViewport::textMargin - size.width();
            const double left = caret->x() - TextViewport::textMargin;
            if (right > 0)
                m_view.scrollBy(int(right) + size.width() / 4, 0);
            else if (left < 0)
                m_view.scrollBy(int(left) - size.width() / 4, 0);
            return;
        }
        m_view.scrollBy(0, viewport.rowHeight());
    }
}

QRect TextViewInput::caretRect() const
{
    if (isComposing())
        return preeditCaretRect(m_view.textViewport(), m_style.caret);
    return m_view.textViewport().caretRect(
        m_view.caretAffinity().placeOf(editor().primarySelection().head));
}

/// In the widget; for one out of sight, where the text goes on to it.
QRect TextViewInput::rectFor(TextOffset offset) const
{
    TextViewport& viewport = m_view.textViewport();
    QRect rect =
        offset == editor().primarySelection().head ? caretRect() : viewport.caretRect({offset});
    const QRect inside({}, viewport.size());
    if (rect.isEmpty()) {
        const bool above = offset < viewport.visibleRange().location;
        rect =
            QRect(0, above ? 0 : inside.height() - viewport.rowHeight(), 1, viewport.rowHeight());
    }
    rect.moveLeft(std::clamp(rect.left(), 0, std::max(0, inside.right())));
    return rect.translated(m_view.viewport()->pos());
}

QVariant TextViewInput::query(Qt::InputMethodQuery query) const
{
    const TextSnapshot& text = editor().string();
    const Selection selection = editor().primarySelection();
    const auto inSurroundings = [&](TextOffset offset) {
        const TextRange range = surrounding(editor());
        return int(std::clamp(offset, range.location, range.end()) - range.location);
    };
    switch (query) {
    case Qt::ImEnabled:
        return editor().isEditable();
    case Qt::ImReadOnly:
        return !editor().isEditable();
    case Qt::ImCursorRectangle:
        return rectFor(selection.head);
    case Qt::ImAnchorRectangle:
        return rectFor(selection.anchor);
    case Qt::ImInputItemClipRectangle:
        return m_view.viewport()->geometry();
    case Qt::ImFont:
        return m_view.textFont();
    case Qt::ImHints:
        return int(Qt::ImhMultiLine | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
    case Qt::ImCursorPosition:
        return inSurroundings(selection.head);
    case Qt::ImAnchorPosition:
        return inSurroundings(selection.anchor);
    case Qt::ImSurroundingText:
        return text.string(surrounding(editor()));
    case Qt::ImTextBeforeCursor:
        return text.string(TextRange::between(around(text, selection.head, text.range()).location,
                                              selection.head));
    case Qt::ImTextAfterCursor:
        return text.string(
            TextRange::between(selection.head, around(text, selection.head, text.range()).end()));
    case Qt::ImCurrentSelection: {
        const TextRange range = selection.range();
        const TextOffset end = std::min(range.end(), range.location + surroundingReach);
        return text.string(TextRange::between(range.location, unsplit(text, end)));
    }
    case Qt::ImAbsolutePosition:
        return toInt(selection.head);
    default:
        return {};
    }
}

} // namespace quillory
