#pragma once

#include "app/QPPrintableTextView.h"

#include <QWidget>

class QCheckBox;

namespace quillory {

class PagesPane;
struct PrintSetup;

/// The window that shows a document as it will be printed. The first pages are there at once,
/// however many are to come.
class PrintPreview : public QWidget
{
    Q_OBJECT

public:
    /// \a setup outlives this, which shows it and changes it.
    explicit PrintPreview(PrintSetup& setup);

    /// Shows what printing \a job would, at the place that is in sight. Of line numbers and colours
    /// the setup tells.
    void setJob(const QPPrintableTextView::Job& job, const QString& name);
    void present();
    PagesPane& pages() const { return *m_pages; }
    /// True once all pages of the job were found.
    bool isComplete() const { return m_isComplete; }

Q_SIGNALS:
    void printClicked();
    void saveClicked();
    void setupChanged();
    /// The window has come to the front.
    void activated();

protected:
    bool event(QEvent* event) override;

private:
    void build();
    void askForPage();
    void take(int pages, bool areAll);

    PrintSetup& m_setup;
    PagesPane* m_pages;
    QCheckBox* m_lineNumbers;
    QCheckBox* m_colours;
    QSizeF m_paper;   ///< points
    int m_number = 0; ///< of the job shown
    bool m_isComplete = false;
};

} // namespace quillory
