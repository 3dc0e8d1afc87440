#pragma once

#include "app/Popover.h"
#include "document/DocumentStatistics.h"

#include <QTimer>

class QGridLayout;
class QLabel;
class QProgressBar;

namespace quillory {

class DocumentWindow;

/// Tells about a document's file, and how many characters, words and lines there are: of what is
/// selected, in blue, or of the whole text, in grey. Opens at once however long the text is, and
/// fills while it is counted. Hangs from the button that opens it.
class StatisticsPopover : public Popover
{
    Q_OBJECT

public:
    /// Both outlive it.
    StatisticsPopover(DocumentWindow& window, QWidget& button);

    /// Opens it, or puts it away.
    void showInfoPopOver();
    /// Fills and shows it.
    void infoPopoverVoid();

    const DocumentStatistics& statistics() const { return m_statistics; }

protected:
    void place() override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QLabel* addRow(QGridLayout& layout, const QString& title, const char* field);
    void build();
    void showFile();
    void showCounts();
    void paintCounts();

    DocumentWindow& m_window;
    QWidget& m_button;
    DocumentStatistics m_statistics;
    QTimer m_renewal; ///< after the text or the selection changed
    QTimer m_patience;
    QLabel* m_title = nullptr;
    QLabel* m_lineEndingsInfoField = nullptr;
    QLabel* m_dateCreatedField = nullptr;
    QLabel* m_dateEditedField = nullptr;
    QLabel* m_sizeInfoInfoField = nullptr;
    QLabel* m_charInfoField = nullptr;
    QLabel* m_charExclInfoField = nullptr;
    QLabel* m_wordInfoField = nullptr;
    QLabel* m_linesInfoField = nullptr;
    QLabel* m_linesInfoTitleField = nullptr;
    QProgressBar* m_progress = nullptr;
};

} // namespace quillory
