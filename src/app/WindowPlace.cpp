#include "app/WindowPlace.h"

#include "app/DocumentWindow.h"
#include "app/LoadFlow.h"
#include "app/StatusLine.h"
#include "app/ViewAppearance.h"
#include "app/WindowPresentation.h"
#include "document/Document.h"
#include "document/EditJournal.h"
#include "document/ScreenPlacement.h"
#include "document/WindowState.h"
#include "view/LineNumberView.h"
#include "view/TextViewWidget.h"

#include <QGuiApplication>
#include <QScreen>

namespace quillory {

namespace {

std::vector<ScreenArea> screensInOrder()
{
    std::vector<ScreenArea> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.push_back({screen->name(), screen->availableGeometry()});
    return screens;
}

void takeScroll(DocumentWindow& window, SavedWindow& place)
{
    TextViewport& viewport = window.view().textViewport();
    const TextViewport::VisibleRow top = viewport.rows().front();
    place.firstLine = top.row.line.value();
    place.firstColumn = top.row.range.location - top.row.content.location;
    place.firstRowY = top.y;
    place.scrolledX = viewport.x();
}

void giveScroll(DocumentWindow& window, const SavedWindow& place)
{
    const TextSnapshot& text = window.document().completeString();
    const LineIndex line(std::clamp<qint64>(place.firstLine, 0, text.lineCount() - 1));
    const TextRange content = text.lineContent(line);
    TextViewport& viewport = window.view().textViewport();
    viewport.showAt(content.location + std::min<TextOffset>(place.firstColumn, content.length),
                    place.firstRowY);
    viewport.scrollToX(place.scrolledX);
    window.view().scrollBy(0, 0);
}

/// Asks again with each part that is read.
void scrollOnceThere(DocumentWindow& window, const SavedWindow& place)
{
    if (!window.loading().postpones(place.firstLine + 1,
                                    [&window, place] { scrollOnceThere(window, place); }))
        giveScroll(window, place);
}

void giveSelections(DocumentWindow& window, const SavedWindow& place)
{
    window.document().textView().setSelections(place.selections, place.primary);
}

/// The keys of \a saved that mean the same now as they did then. An index means nothing where its
/// list is another, and a file that was changed since has its own form.
PropertyList::Dictionary stateFor(DocumentWindow& window, const SavedWindow& saved)
{
    PropertyList::Dictionary state = saved.state;
    Document& document = window.document();
    const auto& definitions = document.syntaxColouring().definitions();
    const QString definitionKey = QStringLiteral("selectedDefinition");
    if (const auto index = state.find(definitionKey); index != state.end()) {
        const auto& all = definitions.arrangedObjects();
        const qint64 at = index->toInteger();
        const bool isSame =
            at >= 0 && size_t(at) < all.size() && all[size_t(at)].title() == saved.definitionTitle;
        if (!isSame && definitions.indexForTitle(saved.definitionTitle) >= 0)
            *index = qint64(definitions.indexForTitle(saved.definitionTitle));
        else if (!isSame)
            state.erase(index);
    }
    const auto& identity = document.fileIdentity();
    if (identity && identity->modifiedNanos != saved.fileModified)
        state.remove(QStringLiteral("lbFormat"));
    if (qint64(document.record().encoding) != saved.encoding)
        state.remove(QStringLiteral("selectedEncoding"));
    return state;
}

} // namespace

SavedWindow placeOf(DocumentWindow& window, const SavedWindow& before)
{
    SavedWindow place;
    Document& document = window.document();
    place.path = document.path();
    if (document.isDocumentEdited())
        place.journal = window.journal().id();
    if (document.fileIdentity())
        place.fileModified = document.fileIdentity()->modifiedNanos;

    const Qt::WindowStates shown = window.windowState();
    place.isMaximised = shown & Qt::WindowMaximized;
    place.isFullScreen = shown & Qt::WindowFullScreen;
    place.isMinimised = shown & Qt::WindowMinimized;
    const bool isPlain = !(shown & (Qt::WindowMaximized | Qt::WindowFullScreen));
    if (isPlain && !place.isMinimised)
        place.frame = QRect(window.pos(), window.size());
    else
        place.frame = before.frame.isValid() ? before.frame : window.normalGeometry();
    if (window.screen())
        place.screen = window.screen()->name();
    place.isFloating = window.presentation().isFloating();
    place.hidesLineNumbers = window.ruler().isHidden();
    place.hidesStatusLine = window.statusLine().isHidden();
    place.zoom = window.appearance().zoom();

    const QPTextView& editor = document.textView();
    place.selections = editor.selections();
    const auto primary =
        std::find(place.selections.begin(), place.selections.end(), editor.primarySelection());
    place.primary = size_t(primary - place.selections.begin());
    takeScroll(window, place);

    place.state = willEncodeRestorableState(document);
    place.definitionTitle = document.record().definitionTitle;
    place.encoding = qint64(document.record().encoding);
    return place;
}

void placeWindow(DocumentWindow& window, const SavedWindow& saved, bool activating)
{
    window.setAttribute(Qt::WA_ShowWithoutActivating, !activating);
    if (saved.frame.isValid()) {
        const QRect frame = placedOnScreens(saved.frame, saved.screen, screensInOrder());
        window.move(frame.topLeft());
        window.resize(frame.size());
    }
    Qt::WindowStates states = window.windowState();
    states.setFlag(Qt::WindowMaximized, saved.isMaximised);
    states.setFlag(Qt::WindowFullScreen, saved.isFullScreen);
    states.setFlag(Qt::WindowMinimized, saved.isMinimised);
    window.setWindowState(states);
    if (saved.isFloating != window.presentation().isFloating())
        window.presentation().toggleFloatingWindow();
    window.ruler().setVisible(!saved.hidesLineNumbers);
    window.statusLine().setVisible(!saved.hidesStatusLine);
}

void showPlace(DocumentWindow& window, const SavedWindow& saved)
{
    if (saved.zoom != 0)
        window.appearance().zoomBy(saved.zoom);
    if (!window.document().isLoading()) {
        didDecodeRestorableState(window.document(), stateFor(window, saved));
        giveSelections(window, saved);
        giveScroll(window, saved);
        return;
    }
    scrollOnceThere(window, saved);
    QObject::connect(
        &window.loading(), &LoadFlow::loaded, &window,
        [&window, saved] {
            didDecodeRestorableState(window.document(), stateFor(window, saved));
            // A caret that is no longer at the beginning was put where it is.
            if (window.document().textView().selections() != std::vector{Selection()})
                return;
            SavedWindow shown;
            takeScroll(window, shown);
            giveSelections(window, saved);
            giveScroll(window, shown);
        },
        Qt::SingleShotConnection);
}

} // namespace quillory
