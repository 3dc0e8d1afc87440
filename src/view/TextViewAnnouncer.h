#pragma once

#include "text/Selection.h"
#include "text/TextSnapshot.h"

#include <QAccessible>
#include <vector>

namespace quillory {

class TextViewWidget;

/// Tells assistive technologies what happens in a text view: what was inserted and removed, where
/// the caret went, and what is selected. Costs next to nothing while none listens.
///
/// The edits of one batch are told when it is over, and then the caret. Of a long text no more than
/// some thousand code units are told, and many edits in one batch are told as one that covers them.
class TextViewAnnouncer : private QAccessible::ActivationObserver
{
public:
    explicit TextViewAnnouncer(TextViewWidget& view);
    ~TextViewAnnouncer() override;
    Q_DISABLE_COPY_MOVE(TextViewAnnouncer)

    /// To be called after the view followed the edit.
    void followEdit(const TextChange& change);
    void editingEnded();
    void selectionChanged();

protected:
    virtual void send(QAccessibleEvent& event);

private:
    struct Edit
    {
        TextChange change;
        TextSnapshot before;
        TextOffset shift = 0; ///< how much further the change is than it would be in `before`
        TextSnapshot after;
    };

    void accessibilityActiveChanged(bool active) override;
    void begin(bool active);
    void note(Edit edit);
    void tell(const Edit& edit);
    void tellSelection();

    TextViewWidget& m_view;
    bool m_active = false; ///< somebody listens; the rest is kept only then
    TextSnapshot m_text;   ///< as it is between two edits
    // Of edits that are made at once, each is told of by its place in the text after those before
    // it, a text that never is.
    TextSnapshot m_before;     ///< the text before them
    TextOffset m_shift = 0;    ///< by how much those told of have moved what follows
    std::vector<Edit> m_edits; ///< of the batch at hand
    Selection m_told;
    LineIndex m_toldLine;
};

} // namespace quillory
