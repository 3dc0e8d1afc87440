#pragma once

#include "app/PreviewProgram.h"
#include "commands/TemporaryTexts.h"

namespace quillory {

class DocumentWindow;
struct PreviewBase;

/// A document's preview as a web page, in the window of another program, which is started when it
/// is first shown. Whatever becomes of that program, the editor goes on.
class WebPreview : public QObject
{
    Q_OBJECT

public:
    /// For a window whose document is there; outlives this.
    explicit WebPreview(DocumentWindow& window);
    ~WebPreview() override;

    /// Shows the preview, with the text as it is now, or hides it.
    void showPreview();
    /// Loads the text as it is now.
    void reload();
    /// The same while the preview is to be seen; when typing pauses.
    void createPreview();

    bool isVisible() const { return m_visible; }
    /// Of its window; "Preview" until the page has one.
    QString title() const { return m_title; }
    bool canGoBack() const { return m_canGoBack; }
    bool canGoNext() const { return m_canGoNext; }
    PreviewProgram& program() { return m_program; }

Q_SIGNALS:
    /// What was last sent is to be seen.
    void loaded();
    /// Title, or where one can go.
    void stateChanged();
    void visibleChanged();

private:
    void load();
    void send(const QString& file, const PreviewBase& base);
    void receive(const QJsonObject& message);
    void finishLoad();
    void setVisible(bool visible);
    void tellInspector();
    void tellProblem(const QString& text);

    DocumentWindow& m_window;
    TemporaryTexts m_texts;
    PreviewProgram m_program;
    QString m_file;           ///< that the page is shown from
    QString m_before;         ///< may still be read
    bool m_isLoading = false; ///< writing counts
    bool m_isStale = false;   ///< the text has changed since
    bool m_isAsked = false;   ///< for the next load
    bool m_isTooLong = false; ///< the text, and the user knows
    bool m_visible = false;
    QString m_title;
    bool m_canGoBack = false;
    bool m_canGoNext = false;
};

} // namespace quillory
