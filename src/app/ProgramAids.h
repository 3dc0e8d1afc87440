#pragma once

#include "text/TextSnapshot.h"

#include <QObject>
#include <memory>

namespace quillory {

class DocumentWindow;
class LogWindow;
class PdfPanel;
class ProgressSheet;
struct ProgramOutcome;

/// What a window shows of the programs that its document's commands run: that one is waited for,
/// what it wrote, and the PDF that it made.
class ProgramAids : public QObject
{
    Q_OBJECT

public:
    /// For a window whose document and text are there; both outlive this.
    explicit ProgramAids(DocumentWindow& window);
    ~ProgramAids() override;

    ProgressSheet& sheet() const { return *m_sheet; }
    /// Made when it is first asked for.
    LogWindow& log();
    PdfPanel& pdfPanel();

    /// Shows \a output in the place of what the log held, and brings the log to the front.
    void showInLog(const TextSnapshot& output);
    /// Shows the log, or hides it.
    void toggleLog();
    bool isLogVisible() const;
    /// Shows the PDF panel, or hides it. While it has no PDF, one that lies beside the document is
    /// taken.
    void showPDFPreview();
    bool isPDFPreviewVisible() const;

private:
    void open(const QString& path);
    void tellOfTypesetting(const ProgramOutcome& outcome);

    DocumentWindow& m_window;
    ProgressSheet* m_sheet;
    std::unique_ptr<LogWindow> m_log;
    std::unique_ptr<PdfPanel> m_pdfPanel;
};

} // namespace quillory
