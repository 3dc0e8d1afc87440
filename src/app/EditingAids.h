#pragma once

namespace quillory {

class DocumentWindow;
class TextCompletion;

/// What a window shows while its text is edited: where a bracket was opened, that something did
/// not work, and the words that may complete what is typed.
class EditingAids
{
public:
    /// For a window whose document and view are there; both outlive this.
    explicit EditingAids(DocumentWindow& window);

    TextCompletion& completion() const { return *m_completion; }

private:
    TextCompletion* m_completion;
};

} // namespace quillory
