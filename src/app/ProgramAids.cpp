#include "app/ProgramAids.h"

#include "app/DocumentWindow.h"
#include "app/LogWindow.h"
#include "app/MessageArea.h"
#include "app/PdfPanel.h"
#include "app/ProgressSheet.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace quillory {

ProgramAids::ProgramAids(DocumentWindow& window)
    : m_window(window), m_sheet(new ProgressSheet(window.view().parentWidget()))
{
    Document& document = window.document();
    ExternalPrograms& programs = document.programs();
    connect(&programs, &ExternalPrograms::alertRequested, &document, &Document::alertRequested);
    connect(&programs, &ExternalPrograms::editableChanged, &document, &Document::recordChanged);
    connect(&programs, &ExternalPrograms::started, m_sheet, [this](const QString& command) {
        m_window.messages().clear(MessageArea::Subject::Programs);
        m_sheet->begin(command);
    });
    connect(&programs, &ExternalPrograms::finished, m_sheet, &ProgressSheet::end);
    connect(m_sheet, &ProgressSheet::cancelled, &programs, &ExternalPrograms::cancel);
    connect(&programs, &ExternalPrograms::openRequested, this, &ProgramAids::open);
    connect(&programs, &ExternalPrograms::pdfPreviewRequested, this, [this](const QString& path) {
        pdfPanel().load(path);
        pdfPanel().present();
    });
    connect(&programs, &ExternalPrograms::typesettingFinished, this,
            &ProgramAids::tellOfTypesetting);
    connect(&document, &Document::recordChanged, this, [this] {
        if (m_log)
            m_log->setDocumentName(m_window.document().displayName());
    });
}

ProgramAids::~ProgramAids() = default;

LogWindow& ProgramAids::log()
{
    if (!m_log)
        m_log = std::make_unique<LogWindow>(m_window.environment(),
                                            m_window.document().syntaxColouring(),
                                            m_window.document().displayName());
    return *m_log;
}

PdfPanel& ProgramAids::pdfPanel()
{
    if (!m_pdfPanel)
        m_pdfPanel = std::make_unique<PdfPanel>(m_window.environment().folders.plugins,
                                                m_window.questions());
    return *m_pdfPanel;
}

void ProgramAids::showInLog(const TextSnapshot& output)
{
    log().setText(output);
    log().present();
}

void ProgramAids::toggleLog()
{
    if (isLogVisible())
        m_log->close();
    else
        log().present();
}

bool ProgramAids::isLogVisible() const
{
    return m_log && m_log->isVisible();
}

void ProgramAids::showPDFPreview()
{
    if (isPDFPreviewVisible()) {
        m_pdfPanel->close();
        return;
    }
    const QFileInfo file(m_window.document().path());
    const QString pdf = file.path() + u'/' + file.completeBaseName() + QStringLiteral(".pdf");
    if (!pdfPanel().hasPdf() && !file.filePath().isEmpty() && QFileInfo::exists(pdf))
        pdfPanel().load(pdf);
    pdfPanel().present();
}

bool ProgramAids::isPDFPreviewVisible() const
{
    return m_pdfPanel && m_pdfPanel->isVisible();
}

void ProgramAids::open(const QString& path)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        Q_EMIT m_window.document().alertRequested(
            tr("Error!"),
            tr("No program of this desktop opens “%1”.").arg(QDir::toNativeSeparators(path)));
}

/// A run that went well is not spoken of: its PDF comes.
void ProgramAids::tellOfTypesetting(const ProgramOutcome& outcome)
{
    log().setText(outcome.output);
    QString text;
    if (!outcome.hasProduct)
        text = tr("No PDF was made. The log tells why.");
    else if (!outcome.isProductNew)
        text = tr("No new PDF was made, so the one there is an older one. The log tells why.");
    else if (outcome.exitStatus != 0)
        text = tr("Typesetting met with errors, so the PDF may not be complete. The log tells "
                  "where.");
    else
        return;
    m_window.messages().show(
        MessageArea::Subject::Programs,
        {Message::Kind::Problem, text, {{tr("Show &Log"), [this] { log().present(); }}}});
}

} // namespace quillory
