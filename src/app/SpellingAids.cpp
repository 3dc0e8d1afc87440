#include "app/SpellingAids.h"

#include "app/DocumentWindow.h"
#include "app/StatusLine.h"
#include "document/Document.h"
#include "document/DocumentEnvironment.h"
#include "foundation/UserDefaults.h"
#include "view/RangeRects.h"
#include "view/TextViewWidget.h"

#include <QAction>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <utility>

namespace quillory {

namespace {

constexpr int outcomeTime = 4000; ///< milliseconds

PageSpelling::Page pageOf(DocumentWindow& window)
{
    return {[&window] {
                TextViewWidget& view = window.view();
                return rangesInSight(view.textGeometry(), view.textViewport());
            },
            [&window] { return SpellingScope(window.document().syntaxColouring()); }};
}

/// A menu that has grown while it shows may reach below the screen.
void keepOnScreen(QMenu& menu)
{
    const QScreen* const screen = menu.screen();
    if (!menu.isVisible() || !screen)
        return;
    const int below = menu.geometry().bottom() - screen->availableGeometry().bottom();
    if (below > 0)
        menu.move(menu.x(), std::max(screen->availableGeometry().top(), menu.y() - below));
}

} // namespace

SpellingAids::SpellingAids(DocumentWindow& window, SpellChecker& checker)
    : m_window(window), m_checker(checker),
      m_page(window.document().textView(), checker, pageOf(window)), m_search(checker)
{
    Document& document = window.document();
    TextViewWidget& view = window.view();
    view.setMisspelt(&m_page.misspelt());
    connect(&m_page, &PageSpelling::changed, &view, &TextViewWidget::marksChanged);
    connect(&view, &TextViewWidget::visibleRangeChanged, this, [this] { m_page.schedule(); });
    connect(&document, &Document::recordChanged, this, [this] { m_page.schedule(); });
    connect(&document, &Document::textViewSettingsApplied, this, &SpellingAids::apply);
    connect(&window, &DocumentWindow::firstPainted, this, [this] {
        m_painted = true;
        apply();
    });
    connect(document.textView().contextMenu().get(), &QMenu::aboutToShow, this,
            &SpellingAids::extendContextMenu);

    const auto giveUp = [this] { endSearch(); };
    connect(&document.textView(), &QPTextView::selectionDidChange, this, giveUp);
    connect(&document.textView().textStorage(), &TextStorage::edited, this, giveUp);
    connect(&m_search, &MisspellingSearch::finished, this, &SpellingAids::showFound);
    m_outcome.setSingleShot(true);
    m_outcome.setInterval(outcomeTime);
    connect(&m_outcome, &QTimer::timeout, this, [this] { m_window.statusLine().setActivity({}); });
}

void SpellingAids::apply()
{
    if (!m_painted)
        return;
    const UserDefaults& defaults = m_window.environment().defaults;
    m_checker.setWantedLanguage(defaults.value(keys::spellingLanguage));
    m_page.setEnabled(defaults.value(keys::checkSpelling));
}

// The context menu

QAction* SpellingAids::newAction(const QString& text, QMenu& menu, QAction* before)
{
    auto* action = new QAction(text, &menu);
    menu.insertAction(before, action);
    m_added.append(action);
    return action;
}

void SpellingAids::extendContextMenu()
{
    qDeleteAll(std::exchange(m_added, {}));
    QPTextView& editor = m_window.document().textView();
    const std::optional<TextRange> word = m_page.misspeltAt(editor.selectedRange());
    QMenu& menu = *editor.contextMenu();
    if (word && editor.isEditable())
        addCorrections(menu, menu.actions().value(0), *word);
}

void SpellingAids::addCorrections(QMenu& menu, QAction* before, TextRange word)
{
    const QString spelt = m_window.document().completeString().string(word);
    QAction* const placeholder = newAction(tr("Looking for Suggestions…"), menu, before);
    placeholder->setEnabled(false);
    newAction({}, menu, before)->setSeparator(true);
    const QAction* const learn = newAction(tr("&Learn Spelling"), menu, before);
    connect(learn, &QAction::triggered, this, [this, spelt] { m_checker.learn(spelt); });
    const QAction* const ignore = newAction(tr("&Ignore Spelling"), menu, before);
    connect(ignore, &QAction::triggered, this, [this, spelt] { m_checker.ignore(spelt); });
    newAction({}, menu, before)->setSeparator(true);
    m_checker.ask(
        placeholder, [spelt](SpellingLexicon& lexicon) { return lexicon.suggestions(spelt); },
        [this, &menu, placeholder, word, spelt](const QStringList& suggestions) {
            showSuggestions(menu, placeholder, suggestions, word, spelt);
        });
}

void SpellingAids::showSuggestions(QMenu& menu, QAction* placeholder,
                                   const QStringList& suggestions, TextRange range,
                                   const QString& word)
{
    if (suggestions.isEmpty()) {
        placeholder->setText(tr("No Suggestions"));
        return;
    }
    for (const QString& suggestion : suggestions) {
        QString text = suggestion;
        QAction* const action =
            newAction(text.replace(u'&', QStringLiteral("&&")), menu, placeholder);
        QFont font = action->font();
        font.setBold(true);
        action->setFont(font);
        connect(action, &QAction::triggered, this,
                [this, range, word, suggestion] { correct(range, word, suggestion); });
    }
    m_added.removeOne(placeholder);
    delete placeholder;
    keepOnScreen(menu);
}

void SpellingAids::correct(TextRange range, const QString& word, const QString& correction)
{
    QPTextView& editor = m_window.document().textView();
    if (range.end() > editor.string().length() || editor.string().string(range) != word)
        return; // the text has changed below the menu
    const TextEdit edit{range, TextSnapshot(correction)};
    editor.replaceCharacters({&edit, 1}, {Selection::caret(range.location + correction.size())}, 0,
                             tr("Correct Spelling"));
}

// The next misspelt word

void SpellingAids::selectNextMisspelling()
{
    endSearch();
    m_checker.setWantedLanguage(m_window.environment().defaults.value(keys::spellingLanguage));
    m_searching = true;
    m_window.view().installEventFilter(this);
    m_window.statusLine().setActivity(tr("Checking spelling…"));
    Document& document = m_window.document();
    m_search.start(document.completeString(), document.textView().selectedRange().end(),
                   SpellingScope(document.syntaxColouring()));
}

bool SpellingAids::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress)
        endSearch();
    return QObject::eventFilter(watched, event);
}

void SpellingAids::endSearch(const QString& outcome)
{
    if (!std::exchange(m_searching, false) && !m_outcome.isActive())
        return;
    m_search.cancel();
    m_window.view().removeEventFilter(this);
    m_window.statusLine().setActivity(outcome);
    m_outcome.stop();
    if (!outcome.isEmpty())
        m_outcome.start();
}

void SpellingAids::showFound(const std::optional<TextRange>& word)
{
    if (!word) {
        Q_EMIT m_window.document().textView().beep();
        endSearch(m_checker.language().isEmpty() ? tr("No spelling dictionary is installed")
                                                 : tr("No misspelt words"));
        return;
    }
    endSearch();
    m_window.document().textView().setSelectedRange(*word);
    m_window.view().showCaret();
    m_window.view().showFindIndicatorForRange(*word);
}

} // namespace quillory
