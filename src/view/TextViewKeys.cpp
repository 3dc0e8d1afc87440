#include "view/TextViewKeys.h"

#include "editing/QPTextView.h"
#include "view/RowMovement.h"
#include "view/TextViewWidget.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeySequence>
#include <algorithm>
#include <array>

namespace quillory {

namespace {

constexpr auto ctrl = Qt::ControlModifier;
constexpr auto shift = Qt::ShiftModifier;
constexpr auto plain = Qt::NoModifier;

/// A key that moves; with Shift it extends the selection.
struct Movement
{
    int key;
    Qt::KeyboardModifier modifier;
    void (*move)(TextViewWidget& view, bool extending);
};

using V = TextViewWidget;

constexpr std::array movements{
    Movement{Qt::Key_Left, plain, [](V& v, bool e) { v.visualMovement().moveLeft(e); }},
    Movement{Qt::Key_Right, plain, [](V& v, bool e) { v.visualMovement().moveRight(e); }},
    Movement{Qt::Key_Left, ctrl, [](V& v, bool e) { v.visualMovement().moveWordLeft(e); }},
    Movement{Qt::Key_Right, ctrl, [](V& v, bool e) { v.visualMovement().moveWordRight(e); }},
    Movement{Qt::Key_Up, plain, [](V& v, bool e) { v.rowMovement().moveByRows(-1, e); }},
    Movement{Qt::Key_Down, plain, [](V& v, bool e) { v.rowMovement().moveByRows(1, e); }},
    Movement{Qt::Key_Up, ctrl, [](V& v, bool e) { v.editor().moveParagraphBackward(e); }},
    Movement{Qt::Key_Down, ctrl, [](V& v, bool e) { v.editor().moveParagraphForward(e); }},
    Movement{Qt::Key_Home, plain, [](V& v, bool e) { v.rowMovement().moveToRowStart(e); }},
    Movement{Qt::Key_End, plain, [](V& v, bool e) { v.rowMovement().moveToRowEnd(e); }},
    Movement{Qt::Key_Home, ctrl, [](V& v, bool e) { v.editor().moveToBeginningOfDocument(e); }},
    Movement{Qt::Key_End, ctrl, [](V& v, bool e) { v.editor().moveToEndOfDocument(e); }},
    Movement{Qt::Key_PageUp, plain, [](V& v, bool e) { v.moveByPages(-1, e); }},
    Movement{Qt::Key_PageDown, plain, [](V& v, bool e) { v.moveByPages(1, e); }},
};

/// A key that changes the text.
struct Edit
{
    int key;
    Qt::KeyboardModifiers modifiers;
    void (*edit)(TextViewWidget& view);
};

constexpr std::array edits{
    Edit{Qt::Key_Backspace, plain, [](V& v) { v.editor().deleteBackward(); }},
    Edit{Qt::Key_Backspace, shift, [](V& v) { v.editor().deleteBackward(); }},
    Edit{Qt::Key_Backspace, ctrl, [](V& v) { v.editor().deleteWordBackward(); }},
    Edit{Qt::Key_Backspace, ctrl | shift, [](V& v) { v.editor().deleteToBeginningOfParagraph(); }},
    Edit{Qt::Key_Delete, plain, [](V& v) { v.editor().deleteForward(); }},
    Edit{Qt::Key_Delete, ctrl, [](V& v) { v.editor().deleteWordForward(); }},
    Edit{Qt::Key_Delete, ctrl | shift, [](V& v) { v.editor().deleteToEndOfParagraph(); }},
    Edit{Qt::Key_Return, plain, [](V& v) { v.editor().insertNewline(); }},
    Edit{Qt::Key_Return, shift, [](V& v) { v.editor().insertNewline(); }},
    Edit{Qt::Key_Enter, plain, [](V& v) { v.editor().insertNewline(); }},
    Edit{Qt::Key_Enter, shift, [](V& v) { v.editor().insertNewline(); }},
    Edit{Qt::Key_Tab, plain, [](V& v) { v.editor().insertTab(); }},
    Edit{Qt::Key_Delete, shift, [](V& v) { v.commands().cut(); }},
    Edit{Qt::Key_Insert, ctrl, [](V& v) { v.commands().copy(); }},
    Edit{Qt::Key_Insert, shift, [](V& v) { v.commands().paste(); }},
};

/// Commands that a window usually has in its menus; without one the keys work all the same.
struct Command
{
    QKeySequence::StandardKey key;
    void (*run)(TextViewCommands& commands);
};

using C = TextViewCommands;

constexpr std::array commands{
    Command{QKeySequence::Copy, [](C& c) { c.copy(); }},
    Command{QKeySequence::Cut, [](C& c) { c.cut(); }},
    Command{QKeySequence::Paste, [](C& c) { c.paste(); }},
    Command{QKeySequence::SelectAll, [](C& c) { c.selectAll(); }},
    Command{QKeySequence::Undo, [](C& c) { c.undo(); }},
    Command{QKeySequence::Redo, [](C& c) { c.redo(); }},
};

Qt::KeyboardModifiers modifiersOf(const QKeyEvent& event)
{
    return event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
}

const Movement* movementFor(const QKeyEvent& event)
{
    const auto it = std::find_if(movements.begin(), movements.end(), [&](const Movement& m) {
        return m.key == event.key() && m.modifier == (modifiersOf(event) & ~shift);
    });
    return it == movements.end() ? nullptr : &*it;
}

const Edit* editFor(const QKeyEvent& event)
{
    const auto it = std::find_if(edits.begin(), edits.end(), [&](const Edit& edit) {
        return edit.key == event.key() && edit.modifiers == modifiersOf(event);
    });
    return it == edits.end() ? nullptr : &*it;
}

const Command* commandFor(const QKeyEvent& event)
{
    const auto it = std::find_if(commands.begin(), commands.end(),
                                 [&](const Command& c) { return event.matches(c.key); });
    return it == commands.end() ? nullptr : &*it;
}

bool isTyping(const QKeyEvent& event)
{
    const QString text = event.text();
    if (text.isEmpty())
        return false;
    const QChar first = text.front();
    if (first.category() == QChar::Other_Control)
        return false;
    // AltGr is no modifier of its own, or the group switch; with Ctrl, Alt and Meta a key is a
    // command.
    return (modifiersOf(event) & (ctrl | Qt::AltModifier | Qt::MetaModifier)) == 0;
}

} // namespace

bool TextViewKeys::isEditingKey(const QKeyEvent& event)
{
    return movementFor(event) || editFor(event) || ColumnSelection::isColumnKey(event) ||
           isTyping(event);
}

TextViewKeys::TextViewKeys(TextViewWidget& view) : m_view(view)
{
    QObject::connect(&view.columnSelection(), &ColumnSelection::finished, &view, [this] {
        for (const auto& key : std::exchange(m_waiting, {}))
            press(*key);
    });
}

/// Keeps \a event for when all of a large rectangle is selected. Escape does not wait.
bool TextViewKeys::keepsWaiting(const QKeyEvent& event)
{
    ColumnSelection& columns = m_view.columnSelection();
    if (!columns.isSelecting()) {
        m_waiting.clear(); // a click has taken the rectangle away, and what was to be done to it
        return false;
    }
    if (event.key() == Qt::Key_Escape) {
        m_waiting.clear();
        columns.stopSelecting();
        return false;
    }
    const bool isFirst = m_waiting.empty();
    const bool isOurs = isEditingKey(event) || commandFor(event);
    if (!isOurs || (isFirst && ColumnSelection::isColumnKey(event)))
        return false;
    m_waiting.emplace_back(event.clone());
    return true;
}

bool TextViewKeys::press(const QKeyEvent& event)
{
    if (keepsWaiting(event))
        return true;
    const int page = m_view.viewport()->height() / m_view.textViewport().rowHeight() - 1;
    if (m_view.columnSelection().press(event, page)) {
        m_view.commands().publishPrimarySelection();
        m_view.showCaret();
        return true;
    }
    if (event.key() == Qt::Key_F10 && modifiersOf(event) == shift) {
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        QCoreApplication::sendEvent(&m_view, &menu);
        return true;
    }
    if (const Movement* movement = movementFor(event)) {
        const bool extending = event.modifiers() & shift;
        movement->move(m_view, extending);
        if (extending)
            m_view.commands().publishPrimarySelection();
        m_view.showCaret();
        return true;
    }
    if (const Edit* edit = editFor(event)) {
        edit->edit(m_view);
    } else if (isTyping(event)) {
        m_view.editor().insertText(event.text());
    } else {
        if (event.key() == Qt::Key_Escape && m_view.editor().selections().size() > 1) {
            m_view.editor().keepPrimarySelection();
            return true;
        }
        const Command* command = commandFor(event);
        if (!command)
            return false;
        command->run(m_view.commands());
        return true;
    }
    m_view.showCaret();
    return true;
}

} // namespace quillory
