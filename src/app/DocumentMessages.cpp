#include "app/DocumentMessages.h"

#include "app/DocumentWindow.h"
#include "app/EncodingMenu.h"
#include "app/LanguageMenu.h"
#include "app/MessageArea.h"
#include "app/RereadFlow.h"
#include "app/SaveFlow.h"
#include "document/Document.h"
#include "text/EncodingTable.h"
#include "text/LineBreaks.h"
#include "text/TextEncoder.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMenu>

namespace quillory {

namespace {

using Subject = MessageArea::Subject;
using WayOut = Message::WayOut;

QString tr(const char* text)
{
    return QCoreApplication::translate("DocumentMessages", text);
}

WayOut saveElsewhere(DocumentWindow& window)
{
    return {tr("Save &Elsewhere…"), [&window] { window.saving().saveAs(); }};
}

WayOut showCharacter(DocumentWindow& window, TextOffset offset)
{
    return {tr("Show &Character"), [&window, offset] { window.goToOffset(offset); }};
}

WayOut reopenAs(DocumentWindow& window, const QString& label)
{
    return {label, {}, [&window](QMenu& menu) {
                Document& document = window.document();
                fillEncodingMenu(
                    menu, document.encodingsArrayController().entries(), document.record().encoding,
                    [&window](StringEncoding encoding) { window.rereading().reopen(encoding); });
            }};
}

std::vector<WayOut> waysOut(DocumentWindow& window, const SaveResult& result)
{
    switch (result.problem) {
    case SaveProblem::Disk:
        return {{tr("&Try Again"), [&window] { window.saving().save(); }}, saveElsewhere(window)};
    case SaveProblem::ChangedByOther:
        return {{tr("&Overwrite"), [&window] { window.saving().overwrite(); }},
                saveElsewhere(window),
                {tr("&Reload"), [&window] { window.rereading().reload(); }}};
    case SaveProblem::Unencodable:
        return {showCharacter(window, result.offset),
                {tr("Save as &UTF-8"),
                 [&window] {
                     window.chooseEncoding(StringEncoding::utf8);
                     window.saving().save();
                 }},
                saveElsewhere(window)};
    case SaveProblem::UnparsablePropertyList:
        return {{tr("&Go to Line"),
                 [&window, place = TextPlace{result.line.value() + 1, result.column + 1}] {
                     window.goTo(place);
                 }},
                saveElsewhere(window)};
    case SaveProblem::NoEncoding:
        return {reopenAs(window, tr("&Choose Encoding"))};
    case SaveProblem::None:
    case SaveProblem::Incomplete:
    case SaveProblem::NoVersion:
    case SaveProblem::NotQuiet:
        break;
    }
    return {};
}

void showMixedBreaks(DocumentWindow& window)
{
    const Document& document = window.document();
    const LineBreakCounts& counts = document.lineBreaksOnDisk();
    const QLocale locale;
    QStringList kinds;
    const auto add = [&](qsizetype count, LineBreakFormat format) {
        if (count > 0)
            kinds +=
                QStringLiteral("%1 × %2").arg(locale.toString(qlonglong(count)), label(format));
    };
    add(counts.lf, LineBreakFormat::unixLf);
    add(counts.cr, LineBreakFormat::macCr);
    add(counts.crLf, LineBreakFormat::windowsCrLf);
    const QString text =
        tr("The lines of “%1” end in different ways: %2. Saving makes all of them %3.")
            .arg(document.displayName(), kinds.join(QStringLiteral(", ")),
                 label(LineBreakFormat(document.record().lbFormat)));
    window.messages().show(
        Subject::LineBreaks,
        {Message::Kind::Note, text, {{tr("&Settings…"), [&window] { window.showSettings(); }}}});
}

} // namespace

void showStateMessages(DocumentWindow& window)
{
    const Document& document = window.document();
    if (document.isLoading())
        return; // only the whole text can tell
    if (document.isUndecoded()) {
        window.messages().show(
            Subject::Encoding,
            {Message::Kind::Warning,
             tr("The encoding of “%1” could not be recognised, so nothing of it is shown. The file "
                "stays as it is until you choose the encoding to open it in.")
                 .arg(document.displayName()),
             {{tr("Open as &Windows Latin 1"),
               [&window] { window.rereading().reopen(StringEncoding::windowsLatin1); }},
              reopenAs(window, tr("Open &as"))}});
        return;
    }
    if (document.lineBreaksOnDisk().isMixed())
        showMixedBreaks(window);
    if (!document.encodesBack())
        window.messages().show(
            Subject::RoundTrip,
            {Message::Kind::Note,
             tr("“%1” writes some characters in a way that %2 has another form for. Saving keeps "
                "the text, but not every byte.")
                 .arg(document.displayName(), displayName(document.record().encoding))});
}

void updateLineBreaksMessage(DocumentWindow& window)
{
    if (!window.messages().text(Subject::LineBreaks).isEmpty())
        showMixedBreaks(window);
}

void showSaveProblem(DocumentWindow& window, const SaveResult& result)
{
    const QString text = result.message.isEmpty()
                             ? tr("“%1” was not saved.").arg(window.document().displayName())
                             : result.message;
    window.messages().show(Subject::Saving,
                           {Message::Kind::Problem, text, waysOut(window, result)});
}

void showReadProblem(DocumentWindow& window, const QString& text, bool undecodable)
{
    const WayOut again{tr("&Try Again"), [&window] { window.rereading().revert(); }};
    window.messages().show(Subject::Encoding,
                           {Message::Kind::Problem,
                            text,
                            {undecodable ? reopenAs(window, tr("&Choose Encoding")) : again}});
}

void showDefinitionFaults(DocumentWindow& window)
{
    const std::vector<DefinitionFault> faults = window.document().syntaxColouring().faults();
    if (faults.empty()) {
        window.messages().clear(Subject::Definitions);
        return;
    }
    const QString text = faults.front().description();
    const auto more = int(faults.size()) - 1;
    window.messages().show(Subject::Definitions,
                           {Message::Kind::Warning,
                            more == 0 ? text
                                      : QCoreApplication::translate(
                                            "DocumentMessages", "%1 (and %n more)", nullptr, more)
                                            .arg(text),
                            {{tr("Show &Folder"), [&window] { showSyntaxFolder(window); }}}});
}

void showUnencodable(DocumentWindow& window, const EncodingFailure& failure)
{
    const Document& document = window.document();
    const TextPlace place = placeOf(document.completeString(), failure.offset);
    const QString text =
        tr("%1 has no place for the character “%2” (U+%3) in line %4, column %5. The text "
           "cannot be saved in this encoding while it stands there.")
            .arg(displayName(document.record().encoding), QString::fromUcs4(&failure.character, 1),
                 QString::number(uint(failure.character), 16)
                     .toUpper()
                     .rightJustified(4, QLatin1Char('0')))
            .arg(place.line)
            .arg(place.column);
    window.messages().show(
        Subject::Encoding,
        {Message::Kind::Warning,
         text,
         {showCharacter(window, failure.offset),
          {tr("Use &UTF-8"), [&window] { window.chooseEncoding(StringEncoding::utf8); }}}});
}

} // namespace quillory
