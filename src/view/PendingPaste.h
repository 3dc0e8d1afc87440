#pragma once

#include "editing/QPTextView.h"
#include "view/PastedText.h"

#include <functional>

namespace quillory {

/// A text that is being fetched or made ready aside, and the selections it is to replace, which
/// follow the edits made meanwhile. It is given up when such an edit replaces what it is to stand
/// in or beside, and when the editor goes.
class PendingPaste : public QObject
{
    Q_OBJECT

public:
    PendingPaste(QPTextView& editor, QString actionName);

    /// Calls \a text on another thread. Deletes itself when what that answered was inserted, which
    /// it says by finished(), or given up; an empty text is no text, and is told of by a beep.
    void start(std::function<PastedText()> text);

Q_SIGNALS:
    void finished();

private:
    void followEdit(const TextChange& change);
    void insert(const TextSnapshot& text);

    QPTextView& m_editor;
    QString m_actionName;
    std::vector<Selection> m_targets;
    bool m_lost = false;
};

} // namespace quillory
