#pragma once

#include "app/SettingsPopover.h"
#include "app/TextPlace.h"
#include "document/DocumentWindowHost.h"
#include "document/DocumentWriter.h"
#include "text/StringEncoding.h"

#include <QMainWindow>
#include <functional>
#include <memory>

namespace quillory {

class Document;
class Autosave;
class ColourExport;
class CommandActions;
class DocumentController;
class EditJournal;
class EditingAids;
class LineNumberView;
class LoadFlow;
class MainMenu;
class MessageArea;
class PrintFlow;
class ProgramAids;
class RereadFlow;
class SaveFlow;
class SpellingAids;
class StatusLine;
class TextViewWidget;
class TitleBarButtons;
class UserQuestions;
class VersionsFlow;
class ViewAppearance;
class WebPreview;
class WindowPresentation;
struct DocumentEnvironment;

/// What the windows share. All of it outlives them.
struct WindowServices
{
    const DocumentEnvironment& environment;
    UserQuestions& questions;
    DocumentController& controller;
};

/// The window of one document: its messages, its text and the status line, below the menus.
class DocumentWindow : public QMainWindow, public DocumentWindowHost
{
    Q_OBJECT

public:
    /// Opens \a document, which must have been read; the window is not shown yet.
    DocumentWindow(std::unique_ptr<Document> document, const WindowServices& services);
    ~DocumentWindow() override;

    Document& document() const { return *m_document; }
    EditJournal& journal() const;
    DocumentController& controller() const { return m_services.controller; }
    TextViewWidget& view() const { return *m_view; }
    LineNumberView& ruler() const { return *m_ruler; }
    ViewAppearance& appearance() const { return *m_appearance; }
    const DocumentEnvironment& environment() const { return m_services.environment; }
    StatusLine& statusLine() const { return *m_status; }
    MessageArea& messages() const { return *m_messages; }
    SaveFlow& saving() const { return *m_saving; }
    RereadFlow& rereading() const { return *m_rereading; }
    LoadFlow& loading() const { return *m_loading; }
    EditingAids& aids() const { return *m_aids; }
    ColourExport& colourExport() const { return *m_colourExport; }
    PrintFlow& printing() const { return *m_printing; }
    SpellingAids& spelling() const { return *m_spelling; }
    ProgramAids& programs() const { return *m_programs; }
    VersionsFlow& versions() const { return *m_versions; }
    WebPreview& preview() const { return *m_preview; }
    UserQuestions& questions() const { return m_services.questions; }
    CommandActions& actions() const { return *m_actions; }
    TitleBarButtons& titleBarButtons() const { return *m_titleBarButtons; }
    WindowPresentation& presentation() const { return *m_presentation; }

    /// True for a new document that nothing was done to, so that another may take its place.
    bool isUntouched() const;
    /// A background save or reading goes on.
    bool isBusy() const;

    /// Puts the caret there, and shows it in the middle of the window; a line that is still to be
    /// read is waited for.
    void goTo(TextPlace place);
    void goToOffset(TextOffset offset);
    /// Selects the line, as Document::goToLineVoid() does, once it is read.
    void goToLine(qint64 number);
    void askForPlace();

    void showSettings(SettingsPopover::Reason reason = SettingsPopover::Reason::Asked);
    /// The encoding of the next save; for a file that was not understood, the one to read it in.
    void chooseEncoding(StringEncoding encoding);
    void chooseLineBreaks(int lbFormat);
    void toggleFullScreen();
    /// The selected text, for programs that take rich text too.
    void copyWithColours();

    TextRange visibleTextRange() override;

    /// Closes the window once the document is saved or its edits are given up; \a then is told
    /// whether it closed.
    void closeAfterQuestions(const std::function<void(bool closed)>& then = {});
    /// Closes the window; \a then is told that it did.
    void closeWithoutQuestions(const std::function<void(bool closed)>& then = {});

Q_SIGNALS:
    /// The window is going, and its document with it.
    void closed(DocumentWindow* window);
    /// Once, when the text was first painted (FirstPaint): the time for what that need not wait
    /// for.
    void firstPainted();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void build();
    void connectDocument();
    void updateTitle();
    void updateActivity();
    void openFiles(const QStringList& paths);
    void checkEncoding();
    void whenIdle(const std::function<void()>& then);
    void saveOrAskBeforeClosing(const std::function<void(bool)>& then);
    void askBeforeClosing(const std::function<void(bool)>& then);

    WindowServices m_services;
    std::unique_ptr<Document> m_document;
    MessageArea* m_messages = nullptr;
    TextViewWidget* m_view = nullptr;
    LineNumberView* m_ruler = nullptr;
    StatusLine* m_status = nullptr;
    SettingsPopover* m_settings = nullptr; ///< made when first shown
    MainMenu* m_menu = nullptr;
    TitleBarButtons* m_titleBarButtons = nullptr;
    WindowPresentation* m_presentation = nullptr;
    std::unique_ptr<ViewAppearance> m_appearance;
    std::unique_ptr<EditingAids> m_aids;
    std::unique_ptr<SaveFlow> m_saving;
    std::unique_ptr<RereadFlow> m_rereading;
    std::unique_ptr<LoadFlow> m_loading;
    std::unique_ptr<ColourExport> m_colourExport;
    std::unique_ptr<PrintFlow> m_printing;
    std::unique_ptr<SpellingAids> m_spelling;
    std::unique_ptr<ProgramAids> m_programs;
    std::unique_ptr<WebPreview> m_preview;
    std::unique_ptr<CommandActions> m_actions;
    Autosave* m_autosave = nullptr;
    VersionsFlow* m_versions = nullptr;
    bool m_asking = false;   ///< a question before closing is open
    bool m_mayClose = false; ///< it was answered
};

} // namespace quillory
