#include "app/WindowPlace.h"

#include "app/DocumentWindow.h"
#include "app/LoadFlow.h"
#include "app/RereadFlow.h"
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

/// The index in \a state at \a key, of the entry of \a all that \a isMeant: an index means nothing
/// where its list is another.
template<class List, class IsMeant>
void correctIndex(PropertyList::Dictionary& state, const QString& key, const List& all,
                  IsMeant isMeant)
{
    const auto index = state.find(key);
    if (index == state.end())
        return;
    const qint64 at = index->toInteger();
    if (at >= 0 && size_t(at) < all.size() && isMeant(all[size_t(at)]))
        return;
    const auto found = std::find_if(all.begin(), all.end(), isMeant);
    if (found == all.end())
        state.erase(index);
    else
        *index = qint64(found - all.begin());
}

bool isFileAsItWas(const Document& document, const SavedWindow& saved)
{
    return document.fileIdentity() && document.fileIdentity()->modifiedNanos == saved.fileModified;
}

/// The keys of \a saved that mean the same now as they did then. A file that was changed since has
/// its own form.
PropertyList::Dictionary stateFor(Document& document, const SavedWindow& saved)
{
    PropertyList::Dictionary state = saved.state;
    correctIndex(
        state, QStringLiteral("selectedDefinition"),
        document.syntaxColouring().definitions().arrangedObjects(),
        [&](const Definition& definition) { return definition.title() == saved.definitionTitle; });
    if (document.fileIdentity() && !isFileAsItWas(document, saved))
        state.remove(QStringLiteral("lbFormat"));
    const QString encodingKey = QStringLiteral("selectedEncoding");
    if (qint64(document.record().encoding) != saved.encoding)
        state.remove(encodingKey);
    correctIndex(
        state, encodingKey, document.encodingsArrayController().entries(),
        [&](const EncodingEntry& entry) { return qint64(entry.number) == saved.encoding; });
    return state;
}

/// The user had the file read in another encoding than the one it was read in now.
bool isReadOtherwise(Document& document, const SavedWindow& saved)
{
    if (qint64(document.record().encoding) == saved.encoding || !saved.journal.isEmpty() ||
        document.isDocumentEdited() || !isFileAsItWas(document, saved))
        return false;
    const auto& encodings = document.encodingsArrayController().entries();
    return std::any_of(encodings.begin(), encodings.end(), [&](const EncodingEntry& entry) {
        return qint64(entry.number) == saved.encoding;
    });
}

/// Gives what \a window still lacks, unless the user was quicker: a caret that is no longer at the
/// beginning was put where it is. What is at the top stays there.
void giveRest(DocumentWindow& window, const SavedWindow& saved)
{
    didDecodeRestorableState(window.document(), stateFor(window.document(), saved));
    if (window.document().textView().selections() != std::vector{Selection()})
        return;
    SavedWindow shown;
    takeScroll(window, shown);
    giveSelections(window, saved);
    giveScroll(window, shown);
}

/// Has the file read in the encoding of \a saved, if it was not, and gives the rest then.
void giveRestInItsEncoding(DocumentWindow& window, const SavedWindow& saved)
{
    if (!isReadOtherwise(window.document(), saved)) {
        giveRest(window, saved);
        return;
    }
    window.rereading().reopen(StringEncoding(saved.encoding));
    QObject::connect(
        &window.rereading(), &RereadFlow::readingChanged, &window,
        [&window, saved] {
            // Nobody wants the text as it was read at first back.
            if (!window.document().isDocumentEdited())
                window.document().undoManager().removeAllActions();
            giveRest(window, saved);
        },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
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
    const auto& selections = editor.selections();
    if (selections.size() <= maximumSelections)
        place.selections = selections;
    else
        place.selections = {editor.primarySelection()};
    const auto primary =
        std::find(place.selections.begin(), place.selections.end(), editor.primarySelection());
    place.primary = size_t(primary - place.selections.begin());
    takeScroll(window, place);

    place.state = willEncodeRestorableState(document);
    place.definitionTitle = document.record().definitionTitle;
    if (document.hasFormOnDisk())
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
        giveScroll(window, saved);
        giveRestInItsEncoding(window, saved);
        return;
    }
    scrollOnceThere(window, saved);
    QObject::connect(
        &window.loading(), &LoadFlow::loaded, &window,
        [&window, saved] { giveRestInItsEncoding(window, saved); }, Qt::SingleShotConnection);
}

} // namespace quillory
