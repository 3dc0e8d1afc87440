#pragma once

#include "preview/PreviewedFiles.h"
#include "preview/RequestGuard.h"

#include <QJsonObject>
#include <QSet>
#include <QStyle>
#include <QTimer>
#include <QWebEngineProfile>
#include <QWidget>
#include <memory>

class QToolButton;
class QWebEngineDownloadRequest;
class QWebEngineView;

namespace quillory {

class NetworkGate;
class PreviewPage;
class Strip;

/// The window in which one document is seen as a web page. It does what the editor says, and tells
/// it what happens (see EditorLink).
class PreviewWindow : public QWidget
{
    Q_OBJECT

public:
    /// How long a page may take to load before the next state of the text takes its place.
    static constexpr int longestLoad = 2000;       ///< milliseconds
    static constexpr int longestLongLoad = 20'000; ///< the same for a page of many megabytes

    /// How long a page that has not loaded by then may go on without an answer.
    static constexpr int longestSilence = 5000; ///< milliseconds

    /// All that the engine asks of the network goes through \a gate, which outlives this.
    explicit PreviewWindow(NetworkGate& gate);
    ~PreviewWindow() override;

    void receive(const QJsonObject& message);

    PreviewPage& page() const { return *m_page; }
    Strip& strip() const { return *m_strip; }
    QWebEngineView& view() const { return *m_view; }

Q_SIGNALS:
    void tells(const QJsonObject& message);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void build();
    void connectPage();
    QToolButton* addButton(QLayout& bar, QStyle::StandardPixmap icon, const QString& toolTip);
    void addKeys();
    void present();
    void load(const QJsonObject& message);
    void endLoad();
    void askForServer(const QString& server);
    void askForPage(const QUrl& url);
    void allowServers();
    void tellOfSilence();
    void endSilence();
    void tellOfCrash(int status, int code);
    void showTitle(const QString& title);
    void showState();
    void tellVisible();
    void showContextMenu(QPoint place);
    void inspect();
    void askForDownload(QWebEngineDownloadRequest* download);

    NetworkGate& m_gate;
    RequestGuard m_guard;
    PreviewedFiles m_files;
    QWebEngineProfile m_profile; ///< leaves nothing on the disk
    QWebEngineView* m_view;
    PreviewPage* m_page;
    Strip* m_strip;
    QToolButton* m_back = nullptr;
    QToolButton* m_forward = nullptr;
    std::unique_ptr<QWebEngineView> m_inspector; ///< made when first shown
    QStringList m_asked;                         ///< servers that the strip names
    QUrl m_wanted;                               ///< a page of theirs to go to
    QSet<QString> m_declined;                    ///< not asked for again
    QTimer m_loadTimer;
    QTimer m_silenceTimer;
    QTimer m_stateTimer;
    QJsonObject m_state;
    bool m_isLoading = false;
    bool m_tellsCrash = false; ///< the strip does, or of silence
    bool m_developerExtras = false;
    bool m_wasVisible = false;
};

} // namespace quillory
