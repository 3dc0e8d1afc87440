#pragma once

#include <QDialog>
#include <QPointer>

class QListWidget;

namespace quillory {

class DocumentController;
class DocumentWindow;
struct DocumentEnvironment;

/// Where one can begin: a new document, a template, a file, one of those opened last. Whatever is
/// chosen closes it. Files can be dropped on it.
class WelcomeWindow : public QDialog
{
    Q_OBJECT

public:
    /// What is opened may take the place of \a window's document, where that is untouched.
    WelcomeWindow(DocumentController& controller, const DocumentEnvironment& environment,
                  DocumentWindow& window);

    QListWidget& recentFiles() const { return *m_recent; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QLayout* newHead();
    QLayout* newBeginnings();
    QLayout* newRecentFiles();
    QLayout* newFoot(const DocumentEnvironment& environment);
    void listRecentFiles();
    void openFiles(const QStringList& paths);
    void openRecent();
    /// One to act in, which is there as long as the program runs.
    DocumentWindow& opener() const;

    DocumentController& m_controller;
    QPointer<DocumentWindow> m_window;
    QListWidget* m_recent;
};

} // namespace quillory
