#pragma once

#include "document/VersionStore.h"
#include "text/TextSnapshot.h"

#include <QWidget>
#include <atomic>
#include <memory>

class QLabel;
class QListWidget;
class QVBoxLayout;

namespace quillory {

class ComparisonWindow;
class DocumentWindow;
class VersionsFlow;

/// The versions that are kept of a document's file, in a list, and beside it the chosen one
/// compared with the text. Deletes itself when it is closed, and goes with the document's window.
class VersionsWindow : public QWidget
{
    Q_OBJECT

public:
    VersionsWindow(DocumentWindow& window, VersionsFlow& flow,
                   const QVector<FileVersion>& versions);
    ~VersionsWindow() override;

    QListWidget& list() const { return *m_list; }
    /// Null while none is shown.
    ComparisonWindow* comparison() const { return m_comparison; }

private:
    void build();
    void choose(int row);
    void stopReading();
    void compare(const FileVersion& version, const TextSnapshot& text);

    DocumentWindow& m_window;
    VersionsFlow& m_flow;
    const QVector<FileVersion> m_versions; ///< the newest first
    QListWidget* m_list;
    QLabel* m_note; ///< while no comparison is shown
    ComparisonWindow* m_comparison = nullptr;
    std::shared_ptr<std::atomic_bool> m_stopped; ///< reading the last one that was chosen
};

} // namespace quillory
