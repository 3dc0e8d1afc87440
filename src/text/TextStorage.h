#pragma once

#include "text/TextSnapshot.h"

#include <QObject>

namespace quillory {

/// The text of one document as it stands now: a snapshot that edits replace, and a signal for each
/// edit. Belongs to one thread; the snapshots that it hands out may go to any.
class TextStorage : public QObject
{
    Q_OBJECT

public:
    explicit TextStorage(QObject* parent = nullptr) : QObject(parent) {}

    const TextSnapshot& snapshot() const { return m_text; }
    TextOffset length() const { return m_text.length(); }

    /// Puts \a replacement in the place of \a range, which is first pulled into the text.
    void replaceCharactersInRange(TextRange range, const TextSnapshot& replacement);
    void replaceCharactersInRange(TextRange range, QStringView replacement);

    /// Makes all of \a edits at once: ranges of the text as it is, in order and apart. `edited`
    /// comes for each, first to last, with its place in the text after those before it; what lies
    /// behind it may have changed by then.
    void replaceCharacters(std::span<const TextEdit> edits);

    /// An editing batch; batches may nest. `edited` comes for every change all the same, and
    /// `editingEnded` once, when the outermost batch in which anything changed is over.
    void beginEditing();
    void endEditing();

Q_SIGNALS:
    /// The characters changed; snapshot() holds the new ones.
    void edited(const quillory::TextChange& change);
    /// No batch is open any more, and there were changes.
    void editingEnded();

private:
    TextSnapshot m_text;
    int m_batchDepth = 0;
    bool m_changedInBatch = false;
};

} // namespace quillory
