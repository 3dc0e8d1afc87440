#pragma once

#include "app/PdfFile.h"

#include <QWidget>

class QLabel;

namespace quillory {

class PagesPane;
class PdfFindBar;
class UserQuestions;

/// The window that shows the PDF made from a document. Qt's PDF library is loaded, and used, on
/// other threads; loaded when the first PDF is shown.
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

    bool hasPdf() const { return m_file != nullptr; }
    PagesPane& pages() const { return *m_pages; }
    PdfFindBar& findBar() const { return *m_findBar; }
    /// What stands in the place of the pages; empty while they are shown.
    QString note() const;

Q_SIGNALS:
    void loaded();

private:
    struct Read;

    void build();
    void take(const Read& read);
    void tellNote(const QString& note);
    void write(const QString& path);

    QString m_plugins;
    UserQuestions& m_questions;
    std::shared_ptr<PdfFile> m_file;
    QByteArray m_pdf;
    QString m_path;
    QLabel* m_note;
    PagesPane* m_pages;
    PdfFindBar* m_findBar;
    int m_reading = 0; ///< the last one begun
};

} // namespace quillory
