#pragma once

#include "editing/MarkedRanges.h"
#include "editing/find/FindJob.h"

#include <QObject>
#include <QTimer>
#include <optional>

namespace quillory {

class QPTextView;

/// What is found in a text that is edited: every place, looked for on another thread from the
/// selection on, and again when edits have paused.
class FindSession : public QObject
{
    Q_OBJECT

public:
    /// No more places are looked for.
    static constexpr size_t mostMatches = 1'000'000;

    enum class Direction
    {
        Forward,
        Backward
    };

    /// \a editor outlives this.
    explicit FindSession(QPTextView& editor, QObject* parent = nullptr);
    ~FindSession() override;

    const FindQuery& query() const { return m_query; }
    /// Looks for it, and selects the first place from where the selection was when the last one was
    /// selected by findNext(). One without a text finds nothing.
    void setQuery(const FindQuery& query);
    /// Ends the search and forgets what was found.
    void clear();

    /// Those found so far, in order and apart.
    const MarkedRanges& matches() const { return m_matches; }
    bool isSearching() const { return m_givesUp != nullptr || m_pause.isActive(); }
    /// There are more than \a mostMatches.
    bool isCutShort() const { return m_isCutShort; }
    /// Why the query is none: a sentence; empty where it is one.
    const QString& error() const { return m_error; }
    /// Of the place that is selected, counted from 0; none where the selection is no such place.
    std::optional<size_t> current() const;

    /// Selects the next place after the selection, or before it, and around the text's end; as soon
    /// as it is found.
    void findNext(Direction direction = Direction::Forward);
    /// As soon as all are found.
    void selectAll();
    /// Replaces the place that is selected, if one is, and goes to the next.
    void replace(const QString& text);
    /// Replaces all places, as one step. What is edited before they are found gives it up.
    void replaceAll(const QString& text);

Q_SIGNALS:
    /// What was found, or whether it is looked for.
    void changed();
    /// Places in \a range were found, or are none any more.
    void marksChanged(quillory::TextRange range);
    /// \a place was selected; it may be out of sight.
    void selected(quillory::TextRange place);
    /// By replaceAll(); 0 where there was nothing to replace.
    void replacedAll(qsizetype count);

private:
    void start();
    void cancel();
    void take(const FindBatch& batch);
    void forget();
    void followEdit(const TextChange& change);
    void serve();
    std::optional<TextRange> wantedMatch() const;

    QPTextView& m_editor;
    FindQuery m_query;
    std::shared_ptr<ICUPattern> m_pattern; ///< null for none
    MarkedRanges m_matches;
    QString m_error;
    bool m_isCutShort = false;
    QTimer m_pause;
    std::shared_ptr<std::atomic_bool> m_givesUp; ///< the search; null while none goes on
    /// The replacing of all, when this goes.
    std::shared_ptr<std::atomic_bool> m_endsReplacing = std::make_shared<std::atomic_bool>(false);
    bool m_wantsAll = false; ///< to be selected once all are found
    TextOffset m_origin = 0; ///< where the search began
    TextOffset m_home;       ///< where the first place of another query is looked for
    bool m_selects = false;  ///< the selection is set by this

    /// What is to be selected once it is found.
    struct Wish
    {
        TextOffset from = 0;
        Direction direction = Direction::Forward;
    };
    std::optional<Wish> m_wish;
};

} // namespace quillory
