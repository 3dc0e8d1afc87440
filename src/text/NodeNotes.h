#pragma once

#include <QString>
#include <atomic>
#include <memory>
#include <optional>

namespace quillory {

/// What was found out about a node of a text and will always be true of it, by the question asked.
/// Any number of threads may ask and answer at once; the answer to one question must always be the
/// same. Goes with the node.
class NodeNotes
{
public:
    NodeNotes() = default;
    NodeNotes(const NodeNotes&) = delete;
    NodeNotes& operator=(const NodeNotes&) = delete;
    ~NodeNotes()
    {
        for (const Note* note = m_first.load(std::memory_order_relaxed); note;) {
            const std::unique_ptr<const Note> last(note);
            note = note->next;
        }
    }

    std::optional<quint64> answer(const QString& question) const
    {
        for (const Note* note = m_first.load(std::memory_order_acquire); note; note = note->next) {
            if (note->question == question)
                return note->answer;
        }
        return {};
    }

    void add(const QString& question, quint64 answer) const
    {
        auto note = std::make_unique<Note>(question, answer, m_first.load());
        while (!m_first.compare_exchange_weak(note->next, note.get(), std::memory_order_release,
                                              std::memory_order_relaxed)) {
        }
        (void)note.release(); // m_first owns it now
    }

private:
    struct Note
    {
        QString question;
        quint64 answer = 0;
        const Note* next = nullptr;

        Note(QString theQuestion, quint64 theAnswer, const Note* theNext)
            : question(std::move(theQuestion)), answer(theAnswer), next(theNext)
        {}
    };

    mutable std::atomic<const Note*> m_first = nullptr;
};

} // namespace quillory
