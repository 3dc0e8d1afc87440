#include "preview/PreviewWindow.h"

#include "preview/NetworkGate.h"
#include "preview/PreviewPage.h"
#include "preview/Strip.h"

#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QMenu>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QToolButton>
#include <QWebEngineContextMenuRequest>
#include <QWebEngineDownloadRequest>
#include <QWebEngineHistory>
#include <QWebEngineView>
#include <csignal>

namespace quillory {

namespace {

constexpr QSize firstSize(760, 840); // pixels
constexpr int stateDelay = 50;       ///< milliseconds; a page may change its title all the time
constexpr int longestTitle = 300;    ///< code units
constexpr qint64 longPage = 1 << 20; ///< bytes
constexpr int mostNamed = 3;         ///< servers, in the strip

} // namespace

PreviewWindow::PreviewWindow(NetworkGate& gate)
    : m_gate(gate), m_view(new QWebEngineView(this)), m_strip(new Strip(this))
{
    m_profile.setUrlRequestInterceptor(&m_guard);
    m_profile.installUrlSchemeHandler(
        QByteArray(PreviewedFiles::scheme.data(), PreviewedFiles::scheme.size()), &m_files);
    m_profile.setSpellCheckEnabled(false);
    m_page = new PreviewPage(m_profile, m_guard, this);
    m_page->setBackgroundColor(palette().color(QPalette::Base)); // until there is a page
    m_view->setPage(m_page);
    resize(firstSize.boundedTo(screen()->availableSize() * 0.9));
    build();
    addKeys();
    connectPage();
    showTitle({});
    m_loadTimer.setSingleShot(true);
    connect(&m_loadTimer, &QTimer::timeout, this, [this] {
        endLoad();
        if (!m_silenceTimer.isActive())
            m_silenceTimer.start();
        m_page->runJavaScript(QStringLiteral("0"), [this](const QVariant&) { endSilence(); });
    });
    m_silenceTimer.setSingleShot(true);
    m_silenceTimer.setInterval(longestSilence);
    connect(&m_silenceTimer, &QTimer::timeout, this, &PreviewWindow::tellOfSilence);
    m_stateTimer.setSingleShot(true);
    m_stateTimer.setInterval(stateDelay);
    connect(&m_stateTimer, &QTimer::timeout, this, &PreviewWindow::showState);
}

PreviewWindow::~PreviewWindow()
{
    m_gate.setRule({});
    // The pages go before the profile.
    m_inspector.reset();
    delete m_view;
    delete m_page;
}

void PreviewWindow::build()
{
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(6, 3, 6, 3);
    m_back = addButton(*bar, QStyle::SP_ArrowBack, tr("Back (Alt+Left)"));
    connect(m_back, &QToolButton::clicked, m_view, &QWebEngineView::back);
    m_forward = addButton(*bar, QStyle::SP_ArrowForward, tr("Forward (Alt+Right)"));
    connect(m_forward, &QToolButton::clicked, m_view, &QWebEngineView::forward);
    QToolButton* reload = addButton(*bar, QStyle::SP_BrowserReload, tr("Reload (F5)"));
    connect(reload, &QToolButton::clicked, this, [this] {
        Q_EMIT tells({{QStringLiteral("tell"), QStringLiteral("reload")}});
    });
    bar->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(bar);
    layout->addWidget(m_strip);
    layout->addWidget(m_view, 1);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this, &PreviewWindow::showContextMenu);
    m_view->setFocus();
}

QToolButton* PreviewWindow::addButton(QLayout& bar, QStyle::StandardPixmap icon,
                                      const QString& toolTip)
{
    auto* button = new QToolButton(this);
    button->setIcon(style()->standardIcon(icon));
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    bar.addWidget(button);
    return button;
}

void PreviewWindow::addKeys()
{
    const auto add = [this](const QList<QKeySequence>& keys, auto act) {
        for (const QKeySequence& key : keys)
            connect(new QShortcut(key, this), &QShortcut::activated, this, act);
    };
    const auto zoom = [this](qreal factor) {
        return [this, factor] { m_view->setZoomFactor(m_view->zoomFactor() * factor); };
    };
    add({Qt::CTRL | Qt::Key_W, Qt::Key_F6}, [this] { close(); });
    add({Qt::Key_F5, Qt::CTRL | Qt::Key_R, Qt::SHIFT | Qt::Key_F6}, [this] {
        Q_EMIT tells({{QStringLiteral("tell"), QStringLiteral("reload")}});
    });
    add({Qt::ALT | Qt::Key_Left}, [this] { m_view->back(); });
    add({Qt::ALT | Qt::Key_Right}, [this] { m_view->forward(); });
    add({Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, zoom(1.1));
    add({Qt::CTRL | Qt::Key_Minus}, zoom(1 / 1.1));
    add({Qt::CTRL | Qt::Key_0}, [this] { m_view->setZoomFactor(1); });
    add({Qt::Key_F12}, [this] { inspect(); });
}

void PreviewWindow::connectPage()
{
    m_gate.setRule([this](const QString& host, int port) {
        return m_guard.isAllowed(RequestGuard::serverOf(host, port));
    });
    connect(&m_gate, &NetworkGate::refused, this, [this](const QString& host, int port) {
        askForServer(RequestGuard::serverOf(host, port));
    });
    connect(&m_guard, &RequestGuard::refused, this, &PreviewWindow::askForServer);
    connect(&m_guard, &RequestGuard::pageRefused, this, &PreviewWindow::askForPage);
    connect(m_page, &QWebEnginePage::loadStarted, &m_stateTimer, qOverload<>(&QTimer::start));
    connect(m_page, &QWebEnginePage::urlChanged, &m_stateTimer, qOverload<>(&QTimer::start));
    connect(m_page, &QWebEnginePage::titleChanged, &m_stateTimer, qOverload<>(&QTimer::start));
    connect(m_page, &QWebEnginePage::loadFinished, this, [this] {
        m_stateTimer.start();
        endSilence();
        endLoad();
    });
    // A page that says nothing of colours writes in black. The engine makes a dark paper of white
    // where a page asks for that.
    connect(m_page, &QWebEnginePage::contentsSizeChanged, this, [this] {
        if (!m_page->url().isEmpty())
            m_page->setBackgroundColor(Qt::white);
    });
    connect(m_page, &QWebEnginePage::windowCloseRequested, this, &QWidget::close);
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this, &PreviewWindow::tellOfCrash);
    connect(&m_profile, &QWebEngineProfile::downloadRequested, this,
            &PreviewWindow::askForDownload);
}

void PreviewWindow::receive(const QJsonObject& message)
{
    const QString task = message[QStringLiteral("do")].toString();
    if (task == QLatin1StringView("show")) {
        present();
    } else if (task == QLatin1StringView("inspect")) {
        m_developerExtras = message[QStringLiteral("value")].toBool();
        if (m_inspector && !m_developerExtras)
            m_inspector->hide();
    } else if (task == QLatin1StringView("hide")) {
        m_page->closeDialogs();
        hide();
    } else if (task == QLatin1StringView("load")) {
        load(message);
    }
}

void PreviewWindow::present()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

// Loading

void PreviewWindow::load(const QJsonObject& message)
{
    const auto text = [&](const char* key) { return message[QLatin1StringView(key)].toString(); };
    const QUrl before = m_page->url().adjusted(QUrl::RemoveFragment);
    m_files.setPage({text("file"), text("path"), text("folder")});
    if (message[QStringLiteral("isAsked")].toBool())
        m_declined.clear();
    m_isLoading = true;
    const bool isLong = QFileInfo(text("file")).size() > longPage;
    m_loadTimer.start(isLong ? longestLongLoad : longestLoad);
    if (before == m_files.address())
        m_page->renew();
    else
        m_page->go(m_files.address());
}

void PreviewWindow::endLoad()
{
    m_loadTimer.stop();
    if (std::exchange(m_isLoading, false))
        Q_EMIT tells({{QStringLiteral("tell"), QStringLiteral("loaded")}});
}

/// Asks about a page that does nothing but calculate, since no other text can be loaded till then.
void PreviewWindow::tellOfSilence()
{
    if (m_page->isAsking() || (m_inspector && m_inspector->isVisible())) {
        m_silenceTimer.start();
        return;
    }
    m_tellsCrash = true;
    m_strip->ask(tr("The page does not answer. A script may run on and on."), {},
                 {{tr("&End Page"), [this] {
                       if (const qint64 process = m_page->renderProcessPid(); process > 0)
                           ::kill(pid_t(process), SIGKILL);
                   }}});
    m_stateTimer.start();
}

void PreviewWindow::endSilence()
{
    m_silenceTimer.stop();
    if (std::exchange(m_tellsCrash, false))
        m_strip->hide();
}

void PreviewWindow::tellOfCrash(int status, int code)
{
    if (status == QWebEnginePage::NormalTerminationStatus)
        return;
    endSilence();
    m_tellsCrash = true;
    m_strip->ask(tr("The page has ended unexpectedly (%1).").arg(code), {},
                 {{tr("&Reload"), [this] {
                       Q_EMIT tells({{QStringLiteral("tell"), QStringLiteral("reload")}});
                   }}});
    m_stateTimer.start();
    endLoad();
}

// Servers

void PreviewWindow::askForPage(const QUrl& url)
{
    m_wanted = url;
    m_declined.remove(RequestGuard::serverOf(url));
    askForServer(RequestGuard::serverOf(url));
}

void PreviewWindow::askForServer(const QString& server)
{
    if (m_declined.contains(server) || (m_asked.contains(server) && m_strip->isVisible()))
        return;
    if (!m_asked.contains(server))
        m_asked += server;
    QString named = QStringList(m_asked.mid(0, mostNamed)).join(QStringLiteral(", "));
    if (m_asked.size() > mostNamed)
        named = tr("%1 and %n more", nullptr, int(m_asked.size()) - mostNamed).arg(named);
    m_tellsCrash = false;
    m_strip->ask(tr("This page wants to load from %1.").arg(named), m_asked.join(u'\n'),
                 {{tr("&Allow"), [this] { allowServers(); }}, {tr("&Not Now"), [this] {
                                                                   for (const QString& declined :
                                                                        std::exchange(m_asked, {}))
                                                                       m_declined.insert(declined);
                                                                   m_wanted.clear();
                                                                   m_stateTimer.start();
                                                               }}});
    m_stateTimer.start();
}

void PreviewWindow::allowServers()
{
    for (const QString& server : std::exchange(m_asked, {}))
        m_guard.allow(server);
    const QUrl wanted = std::exchange(m_wanted, {});
    if (wanted.isEmpty())
        m_page->renew();
    else
        m_page->go(wanted);
    m_stateTimer.start();
}

void PreviewWindow::askForDownload(QWebEngineDownloadRequest* download)
{
    if (!m_page->mayAsk()) {
        download->cancel();
        return;
    }
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save Download"),
        QDir(download->downloadDirectory()).filePath(download->suggestedFileName()));
    if (path.isEmpty()) {
        download->cancel();
        return;
    }
    download->setDownloadDirectory(QFileInfo(path).path());
    download->setDownloadFileName(QFileInfo(path).fileName());
    download->accept();
}

// What is seen and told

void PreviewWindow::showTitle(const QString& title)
{
    // Where a page has none, the engine takes its address for one, or a part of it.
    const QUrl address = m_page->url();
    const bool isAddress =
        title.isEmpty() ||
        (title.contains(u'/') && (address.toString().contains(title) ||
                                  address.toString(QUrl::FullyEncoded).contains(title)));
    setWindowTitle(isAddress ? tr("Preview") : title.left(longestTitle));
}

void PreviewWindow::showState()
{
    showTitle(m_page->title());
    const QWebEngineHistory& history = *m_page->history();
    m_back->setEnabled(history.canGoBack());
    m_forward->setEnabled(history.canGoForward());
    const QJsonObject state{{QStringLiteral("tell"), QStringLiteral("state")},
                            {QStringLiteral("title"), windowTitle()},
                            {QStringLiteral("canGoBack"), history.canGoBack()},
                            {QStringLiteral("canGoNext"), history.canGoForward()},
                            {QStringLiteral("strip"), m_strip->text()}};
    if (std::exchange(m_state, state) != state)
        Q_EMIT tells(state);
}

void PreviewWindow::tellVisible()
{
    const bool visible = isVisible() && !isMinimized();
    if (std::exchange(m_wasVisible, visible) != visible)
        Q_EMIT tells({{QStringLiteral("tell"), QStringLiteral("visible")},
                      {QStringLiteral("value"), visible}});
}

void PreviewWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    tellVisible();
}

void PreviewWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    tellVisible();
}

void PreviewWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        tellVisible();
}

void PreviewWindow::showContextMenu(QPoint place)
{
    QMenu menu(this);
    const QWebEngineContextMenuRequest* request = m_view->lastContextMenuRequest();
    const auto add = [&](QWebEnginePage::WebAction action) {
        menu.addAction(m_page->action(action));
    };
    if (request && !request->selectedText().isEmpty())
        add(QWebEnginePage::Copy);
    if (request && !request->linkUrl().isEmpty())
        add(QWebEnginePage::CopyLinkToClipboard);
    add(QWebEnginePage::SelectAll);
    menu.addSeparator();
    add(QWebEnginePage::Back);
    add(QWebEnginePage::Forward);
    if (m_developerExtras) {
        menu.addSeparator();
        menu.addAction(tr("&Inspect"), this, [this] {
            inspect();
            m_page->triggerAction(QWebEnginePage::InspectElement);
        });
    }
    menu.exec(m_view->mapToGlobal(place));
}

void PreviewWindow::inspect()
{
    if (!m_developerExtras)
        return;
    if (!m_inspector) {
        m_inspector = std::make_unique<QWebEngineView>();
        m_inspector->setPage(new QWebEnginePage(&m_profile, m_inspector.get()));
        m_inspector->resize(size());
        m_page->setDevToolsPage(m_inspector->page());
    }
    m_inspector->setWindowTitle(tr("Inspector — %1").arg(windowTitle()));
    m_inspector->show();
    m_inspector->raise();
    m_inspector->activateWindow();
}

} // namespace quillory
