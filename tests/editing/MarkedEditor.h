#pragma once

#include "editing/QPTextView.h"

namespace quillory {

/// An editor without a window. Texts are written with their selections: "[" anchor, "]" head of a
/// forward selection, "{" head and "}" anchor of a backward one, "|" a caret.
struct MarkedEditor
{
    TextStorage storage;
    UndoManager undo{storage};
    QPTextView view{storage, undo};

    explicit MarkedEditor(const QString& marked)
    {
        QString text;
        std::vector<Selection> selections;
        for (const QChar c : marked) {
            const TextOffset at = text.size();
            switch (c.unicode()) {
            case '|':
                selections.push_back(Selection::caret(at));
                break;
            case '[':
                selections.push_back({at, at});
                break;
            case ']':
                selections.back().head = at;
                break;
            case '{':
                selections.push_back({at, at});
                break;
            case '}':
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
                text.insert(s->head, QLatin1Char('|'));
                continue;
            }
            const bool forward = s->anchor < s->head;
            text.insert(s->range().end(), QLatin1Char(forward ? ']' : '}'));
            text.insert(s->range().location, QLatin1Char(forward ? '[' : '{'));
        }
        return text.toStdString();
    }
};

} // namespace quillory
