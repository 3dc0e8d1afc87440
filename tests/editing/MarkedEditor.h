#pragma once

#include "editing/QPTextView.h"

namespace quillory {

/// An editor without a window. Texts are written with their selections: "[" anchor, "]" head of a
/// forward selection, "{" head and "}" anchor of a backward one, "|" a caret; or with other marks.
struct MarkedEditor
{
    TextStorage storage;
    UndoManager undo{storage};
    QPTextView view;
    QString marks;

    explicit MarkedEditor(const QString& marked, const UserDefaults* defaults = nullptr,
                          const QString& theMarks = QStringLiteral("[]{}|"))
        : view(storage, undo, defaults), marks(theMarks)
    {
        QString text;
        std::vector<Selection> selections;
        for (const QChar c : marked) {
            const TextOffset at = text.size();
            switch (marks.indexOf(c)) {
            case 4:
                selections.push_back(Selection::caret(at));
                break;
            case 0:
            case 2:
                selections.push_back({at, at});
                break;
            case 1:
                selections.back().head = at;
                break;
            case 3:
                selections.back().anchor = at;
                break;
            default:
                text += c;
            }
        }
        storage.replaceCharactersInRange({0, 0}, text);
        view.setSelections(selections, selections.size() - 1);
        undo.markClean();
    }

    std::string marked() const
    {
        QString text = storage.snapshot().string();
        const auto& selections = view.selections();
        for (auto s = selections.rbegin(); s != selections.rend(); ++s) {
            if (s->isCaret()) {
                text.insert(s->head, marks[4]);
                continue;
            }
            const bool forward = s->anchor < s->head;
            text.insert(s->range().end(), marks[forward ? 1 : 3]);
            text.insert(s->range().location, marks[forward ? 0 : 2]);
        }
        return text.toStdString();
    }
};

} // namespace quillory
