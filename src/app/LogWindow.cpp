#include "app/LogWindow.h"

#include "app/LogSearch.h"
#include "app/ViewAppearance.h"
#include "document/DocumentEnvironment.h"
#include "foundation/Background.h"
#include "foundation/NotificationCenter.h"
#include "view/TextViewWidget.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QShortcut>
#include <QToolButton>

namespace quillory {

namespace {

constexpr TextOffset quickLength = 1 << 20; // freed without a noticeable wait
constexpr QSize firstSize(720, 420);        // pixels

QToolButton* newButton(const QString& text, const QString& toolTip, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAutoRaise(true);
    return button;
}

} // namespace

LogWindow::LogWindow(const DocumentEnvironment& environment, const SyntaxColouring& colouring,
                     const QString& documentName)
    : m_view(new TextViewWidget(m_editor, m_overlay, this)),
      m_appearance(new ViewAppearance(*m_view, environment, colouring))
{
    m_appearance->setParent(this);
    m_editor.setEditable(false);
    connect(&m_storage, &TextStorage::edited, &m_overlay, &Overlay::textChanged);
    connect(&environment.notifications, &NotificationCenter::posted, this,
            [this](const QString& name) {
                if (name == notifications::preferencesDidChange)
                    m_appearance->apply();
            });
    setDocumentName(documentName);
    resize(firstSize);
    build();
    showState();
}

LogWindow::~LogWindow()
{
    setText({});
    delete m_view; // it looks at the text to the last
}

void LogWindow::build()
{
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setAccessibleName(tr("Log"));
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(6, 3, 6, 3);
    m_state = new QLabel(this);
    auto* find = newButton(tr("Find"), tr("Find in the log (Ctrl+F)"), this);
    auto* copyAll = newButton(tr("Copy"), tr("Copy the selected text, or all of it"), this);
    auto* clearAll = newButton(tr("Clear"), tr("Empty the log"), this);
    connect(find, &QToolButton::clicked, this, &LogWindow::openFind);
    connect(copyAll, &QToolButton::clicked, this, &LogWindow::copy);
    connect(clearAll, &QToolButton::clicked, this, &LogWindow::clear);
    bar->addWidget(m_state, 1);
    for (QToolButton* button : {find, copyAll, clearAll})
        bar->addWidget(button);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(bar);
    layout->addWidget(newFindBar());
    layout->addWidget(m_view, 1);
    fillMenu();
    m_view->setFocus();
}

QWidget* LogWindow::newFindBar()
{
    m_findBar = new QWidget(this);
    m_findBar->hide();
    auto* line = new QHBoxLayout(m_findBar);
    line->setContentsMargins(6, 0, 6, 4);
    m_field = new QLineEdit(m_findBar);
    m_field->setPlaceholderText(tr("Find"));
    m_field->setAccessibleName(tr("Find in the log"));
    m_field->setClearButtonEnabled(true);
    m_outcome = new QLabel(m_findBar);
    auto* previous = newButton(tr("Previous"), tr("Previous place (Shift+F3)"), m_findBar);
    auto* next = newButton(tr("Next"), tr("Next place (F3)"), m_findBar);
    auto* done = newButton(tr("Done"), tr("Close the find bar (Esc)"), m_findBar);
    connect(m_field, &QLineEdit::returnPressed, this, [this] { findNext(); });
    connect(m_field, &QLineEdit::textChanged, m_outcome, &QLabel::clear);
    connect(previous, &QToolButton::clicked, this, [this] { findNext(true); });
    connect(next, &QToolButton::clicked, this, [this] { findNext(); });
    connect(done, &QToolButton::clicked, this, &LogWindow::closeFind);
    line->addWidget(m_field, 1);
    line->addWidget(m_outcome);
    for (QToolButton* button : {previous, next, done})
        line->addWidget(button);
    return m_findBar;
}

/// The text's context menu, and the keys of what is in it.
void LogWindow::fillMenu()
{
    const auto menu = std::make_shared<QMenu>();
    const auto add = [this, &menu](const QString& text, const QKeySequence& keys, auto act) {
        QAction* action = menu->addAction(text);
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    const auto addHere = [&](const QString& text, const QKeySequence& keys, auto act) {
        addAction(add(text, keys, act));
    };
    add(tr("&Copy"), QKeySequence::Copy, [this] { copy(); });
    add(tr("Select &All"), QKeySequence::SelectAll, [this] { m_view->commands().selectAll(); });
    menu->addSeparator();
    addHere(tr("&Find…"), QKeySequence::Find, [this] { openFind(); });
    addHere(tr("Find &Next"), QKeySequence(Qt::Key_F3), [this] { findNext(); });
    addHere(tr("Find &Previous"), QKeySequence(Qt::SHIFT | Qt::Key_F3), [this] { findNext(true); });
    menu->addSeparator();
    add(tr("C&lear"), {}, [this] { clear(); });
    addHere(tr("Close &Window"), QKeySequence(Qt::CTRL | Qt::Key_W), [this] { close(); });
    m_editor.setContextMenu(menu);
    connect(new QShortcut(Qt::Key_F8, this), &QShortcut::activated, this, &QWidget::close);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, [this] {
        if (m_findBar->isVisible())
            closeFind();
        else
            close();
    });
}

void LogWindow::setDocumentName(const QString& name)
{
    setWindowTitle(tr("Log — %1").arg(name));
}

void LogWindow::setText(const TextSnapshot& text)
{
    TextSnapshot before = this->text();
    m_storage.replaceCharactersInRange(before.range(), text);
    m_undo.removeAllActions();
    m_editor.setSelectedRange({0, 0});
    m_view->textViewport().scrollToX(0);
    m_view->textViewport().scrollToY(0);
    if (before.length() > quickLength)
        releaseInBackground(std::move(before));
    ++m_search;
    if (m_state)
        showState();
}

void LogWindow::present()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void LogWindow::copy()
{
    if (!m_editor.selectedRange().isEmpty()) {
        m_view->commands().copy();
        return;
    }
    const std::vector<Selection> before = m_editor.selections();
    m_editor.selectAll();
    m_view->commands().copy();
    m_editor.setSelections(before, before.size() - 1);
}

void LogWindow::openFind()
{
    m_findBar->show();
    m_outcome->clear();
    m_field->setFocus();
    m_field->selectAll();
}

void LogWindow::closeFind()
{
    m_findBar->hide();
    m_view->setFocus();
}

void LogWindow::findNext(bool backwards)
{
    const QString needle = m_field->text();
    if (needle.isEmpty()) {
        openFind();
        return;
    }
    const TextRange selected = m_editor.selectedRange();
    const TextOffset from = backwards ? selected.location : selected.end();
    m_outcome->setText(tr("Searching…"));
    runInBackground(
        this,
        [text = text(), needle, from, backwards] {
            return findInLog(text, needle, from, backwards);
        },
        [this, search = ++m_search](const TextRange& range) {
            if (search == m_search)
                showFound(range);
        });
}

void LogWindow::showFound(const TextRange& range)
{
    m_outcome->setText(range.isEmpty() ? tr("Not found") : QString());
    if (range.isEmpty())
        return;
    m_editor.setSelectedRange(range);
    m_view->centerOn(range.location);
    m_view->showFindIndicatorForRange(range);
}

void LogWindow::showState()
{
    const TextSnapshot& shown = text();
    const bool endsInBreak = !shown.isEmpty() && shown.line(shown.lineAt(shown.length())).isEmpty();
    const qsizetype lines = shown.lineCount() - (endsInBreak ? 1 : 0);
    m_state->setText(shown.isEmpty() ? tr("Nothing was written")
                     : lines == 1    ? tr("1 line")
                                     : tr("%1 lines").arg(QLocale().toString(lines)));
}

} // namespace quillory
