#include "app/WelcomeWindow.h"

#include "app/DocumentController.h"
#include "app/Guides.h"
#include "app/LinkLabel.h"
#include "app/RefillingMenu.h"
#include "app/Shell.h"
#include "app/Templates.h"
#include "document/DocumentEnvironment.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"
#include "view/PastedText.h"

#include <QCheckBox>
#include <QDir>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>

namespace quillory {

namespace {

constexpr int iconSize = 64;        ///< logical pixels
constexpr QSize listSize{360, 220}; ///< at least
constexpr int pathRole = Qt::UserRole;

} // namespace

WelcomeWindow::WelcomeWindow(DocumentController& controller, const DocumentEnvironment& environment,
                             DocumentWindow& window)
    : m_controller(controller), m_window(&window), m_recent(new QListWidget(this))
{
    setWindowTitle(tr("Welcome to Quillory"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    auto* middle = new QHBoxLayout;
    middle->addLayout(newBeginnings());
    middle->addSpacing(12);
    middle->addLayout(newRecentFiles(), 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 14);
    layout->setSpacing(14);
    layout->addLayout(newHead());
    layout->addLayout(middle, 1);
    layout->addLayout(newFoot(environment));
    listRecentFiles();
}

QLayout* WelcomeWindow::newHead()
{
    auto* icon = new QLabel(this);
    icon->setPixmap(
        QIcon(QStringLiteral(":/icons/quillory.svg")).pixmap(QSize(iconSize, iconSize)));
    auto* name = new QLabel(tr("Quillory"), this);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setBold(true);
    name->setFont(large);
    auto* version = new QLabel(tr("Version %1").arg(QLatin1StringView(QUILLORY_VERSION)), this);
    auto* texts = new QVBoxLayout;
    texts->addStretch(1);
    texts->addWidget(name);
    texts->addWidget(version);
    texts->addStretch(1);
    auto* head = new QHBoxLayout;
    head->setSpacing(14);
    head->addWidget(icon);
    head->addLayout(texts, 1);
    return head;
}

QLayout* WelcomeWindow::newBeginnings()
{
    auto* buttons = new QVBoxLayout;
    const auto add = [&](const QString& label) {
        auto* button = new QPushButton(label, this);
        button->setAutoDefault(true);
        buttons->addWidget(button);
        return button;
    };
    QPushButton* fresh = add(tr("&New Document"));
    fresh->setDefault(true);
    connect(fresh, &QPushButton::clicked, this, [this] {
        if (!m_window || !m_window->isUntouched())
            m_controller.newDocument();
        close();
    });
    connect(add(tr("&Open…")), &QPushButton::clicked, this, [this] {
        DocumentWindow& window = opener();
        close();
        m_controller.askForFiles(window);
    });
    auto* templates = new QMenu(this);
    refillOnShow(*templates, [this](QMenu& menu) { addTemplates(menu, opener()); });
    connect(templates, &QMenu::triggered, this, &QWidget::close);
    add(tr("New from &Template"))->setMenu(templates);
    connect(add(tr("&Shared Folder…")), &QPushButton::clicked, this, [this] {
        DocumentWindow& window = opener();
        close();
        Shell::of(window).showiCloudWindow(window);
    });
    buttons->addStretch(1);
    return buttons;
}

QLayout* WelcomeWindow::newRecentFiles()
{
    auto* heading = new QLabel(tr("&Recent files"), this);
    heading->setBuddy(m_recent);
    m_recent->setAccessibleName(tr("Recent files"));
    m_recent->setMinimumSize(listSize);
    m_recent->setTextElideMode(Qt::ElideMiddle);
    m_recent->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_recent->installEventFilter(this);
    connect(m_recent, &QListWidget::itemDoubleClicked, this, &WelcomeWindow::openRecent);
    auto* column = new QVBoxLayout;
    column->addWidget(heading);
    column->addWidget(m_recent, 1);
    return column;
}

QLayout* WelcomeWindow::newFoot(const DocumentEnvironment& environment)
{
    auto* foot = new QHBoxLayout;
    UserDefaults& defaults = environment.defaults;
    auto* again = new QCheckBox(tr("Show this &window when Quillory starts"), this);
    again->setChecked(defaults.value(keys::showWelcome));
    connect(again, &QCheckBox::toggled, this,
            [&defaults](bool isOn) { defaults.setValue(keys::showWelcome, isOn); });
    foot->addWidget(again);
    foot->addStretch(1);
    const QString guide = guidePath(environment.folders, QStringLiteral("users-guide.md"));
    if (!guide.isEmpty()) {
        auto* link = new LinkLabel(
            QStringLiteral("<a href=\"guide\">%1</a>").arg(tr("User's guide").toHtmlEscaped()),
            this);
        connect(link, &QLabel::linkActivated, this, [this, guide] { openFiles({guide}); });
        foot->addWidget(link);
    }
    auto* shut = new QPushButton(tr("&Close"), this);
    shut->setAutoDefault(false);
    connect(shut, &QPushButton::clicked, this, &QWidget::close);
    foot->addWidget(shut);
    return foot;
}

DocumentWindow& WelcomeWindow::opener() const
{
    if (m_window)
        return *m_window;
    return m_controller.windows().empty() ? *m_controller.newDocument()
                                          : *m_controller.windows().back();
}

// The files opened last

void WelcomeWindow::listRecentFiles()
{
    const QStringList paths = m_controller.recentDocuments();
    for (const QString& path : paths) {
        const QFileInfo info(path); // only takes the path apart
        auto* item = new QListWidgetItem(
            QStringLiteral("%1 — %2").arg(info.fileName(), QDir::toNativeSeparators(info.path())),
            m_recent);
        item->setData(pathRole, path);
        item->setToolTip(QDir::toNativeSeparators(path));
    }
    if (paths.isEmpty())
        (new QListWidgetItem(tr("Files that you open are listed here."), m_recent))
            ->setFlags(Qt::NoItemFlags);
    else
        m_recent->setCurrentRow(0);
}

void WelcomeWindow::openRecent()
{
    const QListWidgetItem* const item = m_recent->currentItem();
    if (item && item->flags().testFlag(Qt::ItemIsEnabled)) // not the note in the place of files
        openFiles({item->data(pathRole).toString()});
}

void WelcomeWindow::openFiles(const QStringList& paths)
{
    std::vector<OpenTarget> targets;
    for (const QString& path : paths)
        targets.push_back({path, {}});
    DocumentWindow* const window = m_window;
    close();
    m_controller.open(targets, window);
}

// Keys and drops

bool WelcomeWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_recent && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            openRecent();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void WelcomeWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (localFiles(*event->mimeData()).isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void WelcomeWindow::dropEvent(QDropEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    openFiles(localFiles(*event->mimeData()));
}

} // namespace quillory
