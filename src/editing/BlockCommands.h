#pragma once

#include "editing/BlockEdit.h"

#include <QObject>
#include <QString>
#include <functional>

namespace quillory {

class QPTextView;

/// The commands that rewrite the selected text: indentation, comments, clean-up, closing of tags.
///
/// Each is one undo step, but for indentation, which edits the text past undo and is not announced
/// as a change by the user. Long stretches are worked on aside; the text cannot be edited until
/// then. Where nothing may be edited every command only beeps.
class BlockCommands : public QObject
{
    Q_OBJECT

public:
    /// \a lineComment answers what begins a comment that ends with its line; empty for none.
    BlockCommands(QPTextView& editor, std::function<QString()> lineComment);

    void indentSelection();
    void unindentSelection();
    /// Beeps where the language has no comment, or one longer than the text.
    void commentAction();

    void removeWhitespace();
    /// Asks for an alert with the number of characters that went.
    void zapGremlins();
    void unwrap();
    void reformat();

    /// Beeps where text is selected, or no element is open before a caret. A search that takes long
    /// goes on aside, and comes to nothing if the text or the carets change meanwhile.
    void closeCurrentTag();

Q_SIGNALS:
    /// Whether the text may be edited is another answer now.
    void editableChanged();
    void alertRequested(const QString& title, const QString& message);

private:
    using Work = std::function<BlockEdit(const TextSnapshot&, const std::vector<TextRange>&)>;
    using Apply = std::function<void(const BlockEdit&)>;

    void indentLines();
    bool mayEdit();
    void run(const Work& work, const Apply& apply);
    void runUndoably(const Work& work, const QString& actionName);
    void replace(const BlockEdit& block, const QString& actionName);
    void replaceDirectly(const BlockEdit& block);

    QPTextView& m_editor;
    std::function<QString()> m_lineComment;
};

} // namespace quillory
