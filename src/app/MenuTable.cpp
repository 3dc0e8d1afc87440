#include "app/MenuTable.h"

#include "app/AboutWindow.h"
#include "app/ActionMenu.h"
#include "app/CloudMove.h"
#include "app/ColourExport.h"
#include "app/CommandActions.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/EncodingMenu.h"
#include "app/FunctionMenu.h"
#include "app/Guides.h"
#include "app/LanguageMenu.h"
#include "app/MenuConditions.h"
#include "app/PrintFlow.h"
#include "app/ProgramAids.h"
#include "app/RereadFlow.h"
#include "app/SaveFlow.h"
#include "app/Shell.h"
#include "app/StatisticsPopover.h"
#include "app/StatusLine.h"
#include "app/Templates.h"
#include "app/TitleBarButtons.h"
#include "app/VersionsFlow.h"
#include "app/ViewAppearance.h"
#include "app/WebPreview.h"
#include "app/WindowPresentation.h"
#include "document/Document.h"
#include "text/LineBreaks.h"
#include "view/LineNumberView.h"
#include "view/TextViewWidget.h"

#include <QActionGroup>
#include <QFileInfo>
#include <QMenu>
#include <array>

namespace quillory {

namespace {

using W = DocumentWindow;

/// Leads the eye to the selection, or to the word at the caret.
void showCaret(W& w)
{
    const QPTextView& editor = w.document().textView();
    const Selection selection = editor.primarySelection();
    w.view().centerOn(selection.head);
    w.view().showFindIndicatorForRange(
        selection.isCaret()
            ? editor.selectionRangeForProposedRange({selection.head, 0}, SelectionGranularity::Word)
            : selection.range());
}

bool mayPrint(const W& w)
{
    return isThere(w) && !w.printing().isPrinting();
}

/// \a text with the definition's own word for a function in it.
QString withFunctionTitle(const char* text, const W& w)
{
    QString title = w.document().record().functionTitle;
    if (title.isEmpty())
        title = menuText(ENTRY("Function"));
    return menuText(text).arg(title.replace(u'&', QStringLiteral("&&")));
}

QString guideOf(const W& w)
{
    return guidePath(w.environment().folders, QStringLiteral("users-guide.md"));
}

bool hasGuide(const W& w)
{
    return !guideOf(w).isEmpty();
}

void openGuide(W& w)
{
    w.controller().open({{guideOf(w), {}}}, &w);
}

// Submenus

void fillRecent(QMenu& menu, W& w)
{
    const QStringList paths = w.controller().recentDocuments();
    for (const QString& path : paths) {
        const QFileInfo info(path);
        QString label = QStringLiteral("%1 — %2").arg(info.fileName(), info.path());
        QAction* action = menu.addAction(label.replace(u'&', QStringLiteral("&&")));
        QObject::connect(action, &QAction::triggered, &w, [&w, path] {
            w.controller().open({{path, {}}}, &w);
        });
    }
    menu.addSeparator();
    QAction* clear = menu.addAction(menuText(ENTRY("&Clear List")));
    clear->setEnabled(!paths.isEmpty());
    QObject::connect(clear, &QAction::triggered, &w,
                     [&w] { w.controller().clearRecentDocuments(); });
}

void fillReopen(QMenu& menu, W& w)
{
    fillEncodingMenu(menu, w.document().encodingsArrayController().entries(),
                     w.document().record().encoding,
                     [&w](StringEncoding encoding) { w.rereading().reopen(encoding); });
}

void fillEncodings(QMenu& menu, W& w)
{
    fillEncodingMenu(menu, w.document().encodingsArrayController().entries(),
                     w.document().record().encoding,
                     [&w](StringEncoding encoding) { w.chooseEncoding(encoding); });
}

void fillLineBreaks(QMenu& menu, W& w)
{
    auto* group = new QActionGroup(&menu);
    for (const LineBreakFormat format :
         {LineBreakFormat::unixLf, LineBreakFormat::macCr, LineBreakFormat::windowsCrLf}) {
        QAction* action = menu.addAction(label(format));
        action->setActionGroup(group);
        action->setCheckable(true);
        action->setChecked(w.document().record().lbFormat == int(format));
        QObject::connect(action, &QAction::triggered, &w,
                         [&w, format] { w.chooseLineBreaks(int(format)); });
    }
}

void listWindows(QMenu& menu, W& w)
{
    int number = 0;
    auto* group = new QActionGroup(&menu);
    for (W* other : w.controller().windows()) {
        QString name = other->document().displayName();
        name.replace(u'&', QStringLiteral("&&"));
        ++number;
        const QString mnemonic = number < 10 ? QStringLiteral("&%1  ").arg(number) : QString();
        QAction* action =
            menu.addAction(mnemonic + name + (other->isWindowModified() ? u" •"_qs : QString()));
        action->setToolTip(other->document().path());
        action->setActionGroup(group);
        action->setCheckable(true);
        action->setChecked(other == &w);
        QObject::connect(action, &QAction::triggered, other,
                         [other] { other->controller().raise(*other); });
    }
    menu.setToolTipsVisible(true);
}

// The menus

constexpr MenuItem separator{};

QString cloudLabel(const W& window)
{
    return menuText(isCloudItem(window) ? ENTRY("Remove From iClo&ud") : ENTRY("Move To iClo&ud"));
}

constexpr MenuItem fileMenu[]{
    {.text = ENTRY("&New"),
     .standardKey = QKeySequence::New,
     .run = [](W& w) { w.controller().newDocument(); }},
    {.text = ENTRY("New fro&m Template"), .fill = fillTemplateMenu},
    {.text = ENTRY("&Open…"),
     .standardKey = QKeySequence::Open,
     .run = [](W& w) { w.controller().askForFiles(w); }},
    {.text = ENTRY("Open &Recent"), .fill = fillRecent},
    {.text = ENTRY("Open from Shared &Folder…"),
     .ownKeys = "Ctrl+Shift+O",
     .run = [](W& w) { Shell::of(w).showiCloudWindow(w); }},
    {.text = ENTRY("Move To iClo&ud"),
     .run = [](W& w) { moveToOrFromCloud(w, isCloudItem(w) ? 0 : 1); },
     .offer = offerOfCloud,
     .label = cloudLabel},
    separator,
    {.text = ENTRY("&Save"),
     .standardKey = QKeySequence::Save,
     .run = [](W& w) { w.saving().save(); },
     .isEnabled = isThere},
    {.text = ENTRY("Save &As…"),
     .standardKey = QKeySequence::SaveAs,
     .ownKeys = "Ctrl+Shift+S",
     .run = [](W& w) { w.saving().saveAs(); },
     .isEnabled = isThere},
    {.text = ENTRY("Save a Cop&y…"),
     .run = [](W& w) { w.saving().saveCopy(); },
     .isEnabled = isUnderstood},
    {.text = ENTRY("E&xport as HTML…"),
     .run = [](W& w) { w.colourExport().exportAsHtml(); },
     .isEnabled = [](const W& w) { return isThere(w) && !w.colourExport().isExporting(); }},
    separator,
    {.text = ENTRY("Print Previe&w…"),
     .run = [](W& w) { w.printing().showPreview(); },
     .isEnabled = isThere},
    {.text = ENTRY("&Print…"),
     .standardKey = QKeySequence::Print,
     .ownKeys = "Ctrl+P",
     .run = [](W& w) { w.printing().printTextView(); },
     .isEnabled = mayPrint},
    {.text = ENTRY("Save as P&DF…"),
     .run = [](W& w) { w.printing().savePages(); },
     .isEnabled = mayPrint},
    separator,
    {.text = ENTRY("Re&vert to Saved"),
     .run = [](W& w) { w.rereading().revert(); },
     .isEnabled = hasFile},
    {.text = ENTRY("Revert &To"),
     .isEnabled = hasFile,
     .fill = [](QMenu& menu, W& w) { w.versions().fillMenu(menu); }},
    {.text = ENTRY("Reopen with &Encoding"), .isEnabled = hasFile, .fill = fillReopen},
    separator,
    {.text = ENTRY("&Information"),
     .ownKeys = "Alt+Return",
     .run = [](W& w) { w.titleBarButtons().information().showInfoPopOver(); }},
    separator,
    {.text = ENTRY("&Close"),
     .standardKey = QKeySequence::Close,
     .ownKeys = "Ctrl+W",
     .run = [](W& w) { w.close(); }},
    {.text = ENTRY("&Quit"),
     .standardKey = QKeySequence::Quit,
     .ownKeys = "Ctrl+Q",
     .run = [](W& w) { w.controller().quit(); }},
    {.text = ENTRY("Quit and Close A&ll Windows"),
     .ownKeys = "Ctrl+Alt+Shift+Q",
     .run = [](W& w) { w.controller().quitForGood(); }},
};

constexpr MenuItem viewMenu[]{
    {.text = ENTRY("&Wrap Lines"), .preference = &keys::wrapLines},
    {.text = ENTRY("&Highlight Current Line"), .preference = &keys::highlight},
    {.text = ENTRY("T&ypewriter Scrolling"), .preference = &keys::constrainScroll},
    {.text = ENTRY("&Theme"), .fill = fillThemeMenu},
    separator,
    {.text = ENTRY("Zoom &In"),
     .standardKey = QKeySequence::ZoomIn,
     .ownKeys = "Ctrl++; Ctrl+=",
     .run = [](W& w) { w.appearance().zoomIn(); }},
    {.text = ENTRY("Zoom &Out"),
     .standardKey = QKeySequence::ZoomOut,
     .ownKeys = "Ctrl+-",
     .run = [](W& w) { w.appearance().zoomOut(); }},
    {.text = ENTRY("&Actual Size"),
     .ownKeys = "Ctrl+0",
     .run = [](W& w) { w.appearance().resetZoom(); },
     .isEnabled = [](const W& w) { return w.appearance().isZoomed(); }},
    separator,
    {.text = ENTRY("Line &Numbers"),
     .run = [](W& w) { w.ruler().setVisible(w.ruler().isHidden()); },
     .isChecked = [](const W& w) { return !w.ruler().isHidden(); }},
    {.text = ENTRY("&Status Line"),
     .run = [](W& w) { w.statusLine().setVisible(w.statusLine().isHidden()); },
     .isChecked = [](const W& w) { return !w.statusLine().isHidden(); }},
    {.text = ENTRY("Lo&g"),
     .ownKeys = "F8",
     .run = [](W& w) { w.programs().toggleLog(); },
     .isChecked = [](const W& w) { return w.programs().isLogVisible(); }},
    {.text = ENTRY("Pre&view"),
     .ownKeys = "F6",
     .run = [](W& w) { w.preview().showPreview(); },
     .isEnabled = [](const W& w) { return w.document().record().canUsePreview && isThere(w); },
     .isChecked = [](const W& w) { return w.preview().isVisible(); }},
    {.text = ENTRY("&Reload Preview"),
     .ownKeys = "Shift+F6",
     .run = [](W& w) { w.preview().reload(); },
     .isEnabled = [](const W& w) { return w.preview().isVisible(); }},
    {.text = ENTRY("&PDF Preview"),
     .ownKeys = "F9",
     .run = [](W& w) { w.programs().showPDFPreview(); },
     .isEnabled = [](const W& w) { return w.document().record().canUsePDFPreview; },
     .isChecked = [](const W& w) { return w.programs().isPDFPreviewVisible(); }},
    separator,
    {.text = ENTRY("&Keep on Top"),
     .run = [](W& w) { w.presentation().toggleFloatingWindow(); },
     .isChecked = [](const W& w) { return w.presentation().isFloating(); }},
    {.text = ENTRY("&Full Screen"),
     .standardKey = QKeySequence::FullScreen,
     .ownKeys = "F11",
     .run = [](W& w) { w.toggleFullScreen(); },
     .isChecked = [](const W& w) { return w.isFullScreen(); }},
};

constexpr MenuItem formatMenu[]{
    {.text = ENTRY("&Document Settings…"),
     .run = [](W& w) { w.showSettings(); },
     .isEnabled = isThere},
    separator,
    {.text = ENTRY("Lan&guage"), .fill = fillLanguageMenu},
    {.text = ENTRY("Show Definitions and &Themes…"), .run = showSyntaxFolder},
    separator,
    {.text = ENTRY("&Encoding"), .isEnabled = isIdle, .fill = fillEncodings},
    {.text = ENTRY("&Line Breaks"), .isEnabled = isUnderstood, .fill = fillLineBreaks},
    {.text = ENTRY("&Byte-Order Mark"),
     .run = [](W& w) { w.document().setHasByteOrderMark(!w.document().hasByteOrderMark()); },
     .isEnabled =
         [](const W& w) {
             return isUnderstood(w) && w.document().record().encoding == StringEncoding::utf8;
         },
     .isChecked = [](const W& w) { return w.document().hasByteOrderMark(); }},
    separator,
    {.text = ENTRY("&Font…"), .run = [](W& w) { w.controller().preferences().chooseFont(&w); }},
};

constexpr MenuItem navigateMenu[]{
    {.text = ENTRY("&Go to Line…"), .ownKeys = "Ctrl+L", .run = [](W& w) { w.askForPlace(); }},
    {.text = ENTRY("&Functions"),
     .ownKeys = "Ctrl+R",
     .run = [](W& w) { w.titleBarButtons().functions().showList(); },
     .offer = offerOfFunctions,
     .label = [](const W& w) { return withFunctionTitle(ENTRY("&%1s"), w); }},
    {.text = ENTRY("&Previous Function"),
     .ownKeys = "Alt+Up",
     .run = [](W& w) { w.document().goToPreviousFunction(); },
     .offer = offerOfNeighbours,
     .label = [](const W& w) { return withFunctionTitle(ENTRY("&Previous %1"), w); }},
    {.text = ENTRY("&Next Function"),
     .ownKeys = "Alt+Down",
     .run = [](W& w) { w.document().goToNextFunction(); },
     .offer = offerOfNeighbours,
     .label = [](const W& w) { return withFunctionTitle(ENTRY("&Next %1"), w); }},
    separator,
    {.text = ENTRY("&Show Caret"), .ownKeys = "Ctrl+J", .run = showCaret},
};

constexpr MenuItem actionsMenu[]{
    {.text = ENTRY("&All Commands…"),
     .ownKeys = "Ctrl+Shift+P",
     .run = [](W& w) { w.actions().showPalette(); }},
    {.text = ENTRY("&Show Actions"),
     .ownKeys = "Ctrl+Shift+A",
     .run = [](W& w) { w.actions().showActionsMenu(); }},
    separator,
};

constexpr MenuItem windowMenu[]{
    {.text = ENTRY("&Minimise"), .ownKeys = "Ctrl+M", .run = [](W& w) { w.showMinimized(); }},
    {.text = ENTRY("&Next Window"),
     .ownKeys = "Ctrl+Tab; Ctrl+PgDown",
     .run = [](W& w) { w.controller().raiseNeighbour(w, 1); },
     .isEnabled = [](const W& w) { return w.controller().windows().size() > 1; }},
    {.text = ENTRY("&Previous Window"),
     .ownKeys = "Ctrl+Shift+Tab; Ctrl+PgUp",
     .run = [](W& w) { w.controller().raiseNeighbour(w, -1); },
     .isEnabled = [](const W& w) { return w.controller().windows().size() > 1; }},
    separator,
};

constexpr MenuItem helpMenu[]{
    {.text = ENTRY("&Welcome…"), .run = [](W& w) { Shell::of(w).showWelcome(w); }},
    {.text = ENTRY("User's &Guide"), .run = openGuide, .isEnabled = hasGuide},
    separator,
    {.text = ENTRY("Check for New &Version…"),
     .run = [](W& w) { Shell::of(w).checkForVersion(w); }},
    {.text = ENTRY("&About Quillory"), .run = [](W& w) { (new AboutWindow(w))->open(); }},
};

} // namespace

std::span<const MenuDefinition> menuTable()
{
    static const std::array menus{
        MenuDefinition{ENTRY("&File"), fileMenu},
        MenuDefinition{ENTRY("&Edit"), editMenu()},
        MenuDefinition{ENTRY("&Search"), searchMenu()},
        MenuDefinition{ENTRY("&View"), viewMenu},
        MenuDefinition{ENTRY("&Text"), textMenu()},
        MenuDefinition{ENTRY("F&ormat"), formatMenu},
        MenuDefinition{ENTRY("&Navigate"), navigateMenu},
        MenuDefinition{ENTRY("&Actions"), actionsMenu, fillActionMenu},
        MenuDefinition{ENTRY("&Window"), windowMenu, listWindows},
        MenuDefinition{ENTRY("&Help"), helpMenu},
    };
    return menus;
}

QList<QKeySequence> keysOf(const MenuItem& item)
{
    QList<QKeySequence> keys;
    if (item.ownKeys)
        keys = QKeySequence::listFromString(QLatin1StringView(item.ownKeys));
    for (const QKeySequence& key : QKeySequence::keyBindings(item.standardKey)) {
        if (!keys.contains(key))
            keys.append(key);
    }
    return keys;
}

QString menuText(const char* text)
{
    return QCoreApplication::translate("MenuTable", text);
}

} // namespace quillory
