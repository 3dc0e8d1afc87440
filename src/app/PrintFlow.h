#pragma once

#include "app/PrintOutput.h"
#include "app/PrintSetup.h"

#include <QObject>
#include <QPointer>
#include <atomic>
#include <memory>

class QPrinter;

namespace quillory {

class Document;
class PrintPreview;
class ProgressBar;
class UserDefaults;
class UserQuestions;

/// What of \a document is printed, and how, as the user defaults have it: all of it, in black,
/// without line numbers.
QPPrintableTextView::Job printJob(Document& document, const UserDefaults& defaults);

/// Prints the text of a window, or writes its pages as a PDF file, on another thread. What is
/// edited meanwhile is not in it.
class PrintFlow : public QObject
{
    Q_OBJECT

public:
    /// All of the arguments outlive this.
    PrintFlow(Document& document, UserDefaults& defaults, UserQuestions& questions,
              ProgressBar& bar, QWidget& window);
    ~PrintFlow() override;

    /// Asks for a printer and what to print, once the print service answers.
    void printTextView();
    /// Asks for a place, and writes a PDF file there: entirely, or not at all.
    void savePages();
    /// Shows the pages in a window of their own, with the text as it is now.
    void showPreview();
    void cancel();
    /// Null while it is closed.
    PrintPreview* preview() const;
    bool isPrinting() const { return m_state != nullptr; }

Q_SIGNALS:
    void printingChanged();
    /// \a message names the document or the file, and the way out.
    void failed(const QString& message);

private:
    using Print = std::function<PrintAnswer(QPPrintableTextView&, const GoOn&)>;

    /// What is printed now, as the user is told of it.
    struct Errand
    {
        QString name; ///< of the document, or of the file that is written
        bool isFile = false;
    };

    /// Shared with the thread that prints.
    struct State
    {
        std::atomic_bool cancelled = false;
        std::atomic_bool isTelling = false; ///< how far it is
    };

    QPPrintableTextView::Job wholeJob();
    QWidget& asker() const;
    void setUpPrinter();
    void askHowToPrint();
    void refreshPreview();
    void writeTo(const QString& path, const QPPrintableTextView::Job& job);
    void start(const QPPrintableTextView::Job& job, const Errand& errand, const Print& print);
    void show(const QPPrintableTextView::Progress& progress);
    void notePage(int page);
    void finish(const PrintAnswer& answer, const Errand& errand);

    Document& m_document;
    UserDefaults& m_defaults;
    UserQuestions& m_questions;
    ProgressBar& m_bar;
    QWidget& m_window;
    PrintSetup m_setup; ///< as it was chosen last
    QPointer<PrintPreview> m_preview;
    bool m_isPreviewOld = false;
    std::unique_ptr<QPrinter> m_printer; ///< as it was set up last
    bool m_isAsking = false;             ///< the print service
    std::shared_ptr<State> m_state;      ///< null while nothing is printed
};

} // namespace quillory
