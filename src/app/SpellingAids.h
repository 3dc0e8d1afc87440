#pragma once

#include "editing/spelling/MisspellingSearch.h"
#include "editing/spelling/PageSpelling.h"

class QAction;
class QMenu;

namespace quillory {

class DocumentWindow;

/// What a window does about spelling: waves below misspelt words in sight, while the user default
/// checkSpelling is on, corrections in the text's context menu, and the way to the next such word.
class SpellingAids : public QObject
{
    Q_OBJECT

public:
    /// Nothing happens before \a window is painted. \a checker outlives this.
    SpellingAids(DocumentWindow& window, SpellChecker& checker);

    SpellChecker& checker() const { return m_checker; }
    const PageSpelling& page() const { return m_page; }

    /// Selects the next misspelt word after the selection, a little later in a long text; any key,
    /// edit or other selection gives that up.
    void selectNextMisspelling();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply();
    void extendContextMenu();
    void addCorrections(QMenu& menu, QAction* before, TextRange word);
    void showSuggestions(QMenu& menu, QAction* placeholder, const QStringList& suggestions,
                         TextRange range, const QString& word);
    void correct(TextRange range, const QString& word, const QString& correction);
    void showFound(const std::optional<TextRange>& word);
    void endSearch(const QString& outcome = {});
    QAction* newAction(const QString& text, QMenu& menu, QAction* before);

    DocumentWindow& m_window;
    SpellChecker& m_checker;
    PageSpelling m_page;
    MisspellingSearch m_search;
    QList<QAction*> m_added; ///< to the context menu when it showed last
    QTimer m_outcome;        ///< for so long the outcome of a search is shown
    bool m_searching = false;
    bool m_painted = false;
};

} // namespace quillory
