#pragma once

#include "app/PdfViewer.h"

#include <QWidget>
#include <memory>

class QLabel;
class QToolButton;

namespace quillory {

class UserQuestions;

/// The window that shows the PDF made from a document. Qt's PDF library is loaded, on another
/// thread, when the first one is shown.
class PdfPanel : public QWidget
{
    Q_OBJECT

public:
    /// \a plugins is the folder of the plugin "quillory-pdf".
    PdfPanel(QString plugins, UserQuestions& questions);
    ~PdfPanel() override;

    /// Shows the file as it is now, a little later, at the place that was in sight of the one shown
    /// before. Says in the window what is wrong with one that cannot be shown.
    void load(const QString& path);
    void present();
    /// Asks for a place, and writes the PDF that is shown there.
    void savePDF();

    bool hasPdf() const { return m_viewer != nullptr; }
    /// Null while no PDF is shown.
    PdfViewer* viewer() const { return m_viewer.get(); }
    /// What stands in the place of the pages; empty while they are shown.
    QString note() const;

Q_SIGNALS:
    void loaded();

private:
    struct Read;

    void build();
    QToolButton* addButton(const QString& text, const QString& toolTip);
    void take(const Read& read);
    void tellNote(const QString& note);
    void showPage();
    void scrollTo(bool end);
    void write(const QString& path);

    QString m_plugins;
    UserQuestions& m_questions;
    std::unique_ptr<PdfViewer> m_viewer;
    QByteArray m_pdf;
    QString m_path;
    QLabel* m_note;
    QLabel* m_page;
    QWidget* m_bar;
    int m_reading = 0; ///< the last one begun
};

} // namespace quillory
