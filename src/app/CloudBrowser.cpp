#include "app/CloudBrowser.h"

#include "app/CloudModel.h"
#include "app/DocumentController.h"
#include "app/FileReveal.h"
#include "app/SaveFlow.h"
#include "document/DocumentEnvironment.h"
#include "foundation/UserDefaults.h"

#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>
#include <QTreeView>

namespace quillory {

namespace {

constexpr QSize firstSize{860, 520}; ///< logical pixels

/// The columns' widths at first, in characters; the preview takes the rest.
constexpr std::array<int, CloudModel::ColumnCount> columnWidths{26, 9, 0, 20, 18};

bool movesInTable(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
           key == Qt::Key_PageDown;
}

} // namespace

CloudBrowser::CloudBrowser(DocumentController& controller, const DocumentEnvironment& environment)
    : m_controller(controller), m_environment(environment),
      m_model(new CloudModel(m_listing, this)), m_filter(new CloudFilter(*m_model, this)),
      m_search(new QLineEdit(this)), m_table(new QTreeView(this)),
      m_pages(new QStackedWidget(this)), m_note(new QLabel(this)), m_status(new QLabel(this)),
      m_open(new QPushButton(tr("&Open"), this)),
      m_reveal(new QPushButton(tr("Show in &Folder"), this)),
      m_stop(new QPushButton(tr("S&top"), this)),
      m_preferences(new QPushButton(tr("Preferences…"), this))
{
    setWindowTitle(tr("Shared Folder"));
    build();
    connectAll();
    const QString geometry = environment.defaults.value(keys::cloudBrowserGeometry);
    m_isPlaced = restoreGeometry(QByteArray::fromBase64(geometry.toLatin1()));
    if (!m_isPlaced)
        resize(firstSize);
}

CloudBrowser::~CloudBrowser() = default;

void CloudBrowser::build()
{
    m_search->setPlaceholderText(tr("Search names, previews and folders"));
    m_search->setAccessibleName(tr("Search the shared folder"));
    m_search->setClearButtonEnabled(true);
    m_search->installEventFilter(this);

    m_table->setModel(m_filter);
    m_table->setAccessibleName(tr("Files of the shared folder"));
    m_table->setRootIsDecorated(false);
    m_table->setUniformRowHeights(true);
    m_table->setAllColumnsShowFocus(true);
    m_table->setAlternatingRowColors(true);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(CloudModel::Date, Qt::DescendingOrder);
    m_table->setContextMenuPolicy(Qt::CustomContextMenu);
    m_table->installEventFilter(this);
    QHeaderView& header = *m_table->header();
    header.setStretchLastSection(false);
    const int character = fontMetrics().averageCharWidth();
    for (int column = 0; column < CloudModel::ColumnCount; ++column) {
        if (columnWidths[size_t(column)] > 0)
            header.resizeSection(column, columnWidths[size_t(column)] * character);
    }
    header.setSectionResizeMode(CloudModel::Preview, QHeaderView::Stretch);

    auto* empty = new QWidget(this);
    auto* emptyLayout = new QVBoxLayout(empty);
    m_note->setAlignment(Qt::AlignCenter);
    m_note->setWordWrap(true);
    m_note->setTextFormat(Qt::PlainText);
    m_preferences->setAutoDefault(false);
    emptyLayout->addStretch(1);
    emptyLayout->addWidget(m_note);
    emptyLayout->addWidget(m_preferences, 0, Qt::AlignHCenter);
    emptyLayout->addStretch(2);
    m_pages->addWidget(m_table);
    m_pages->addWidget(empty);

    m_status->setTextFormat(Qt::PlainText);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_status, 1);
    bottom->addWidget(m_stop);
    bottom->addWidget(m_reveal);
    bottom->addWidget(m_open);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addWidget(m_pages, 1);
    layout->addLayout(bottom);
}

void CloudBrowser::connectAll()
{
    connect(m_search, &QLineEdit::textChanged, this, &CloudBrowser::search);
    connect(m_search, &QLineEdit::returnPressed, this, &CloudBrowser::openiCloudDocument);
    connect(m_table, &QTreeView::doubleClicked, this, &CloudBrowser::openiCloudDocument);
    connect(m_table, &QTreeView::customContextMenuRequested, this, &CloudBrowser::showMenu);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CloudBrowser::showState);
    connect(m_open, &QPushButton::clicked, this, &CloudBrowser::openiCloudDocument);
    connect(m_reveal, &QPushButton::clicked, this, &CloudBrowser::showiCloudDocumentInFinder);
    connect(m_preferences, &QPushButton::clicked, this, &CloudBrowser::preferencesRequested);
    connect(m_stop, &QPushButton::clicked, this, [this] {
        m_listing.cancel();
        showState();
    });
    connect(&m_listing, &CloudListing::started, this, &CloudBrowser::showState);
    connect(&m_listing, &CloudListing::found, this, &CloudBrowser::showState);
    connect(&m_listing, &CloudListing::finished, this, [this](bool isFolder) {
        m_isFolder = isFolder;
        // What was typed meanwhile keeps its first match.
        if (m_search->text().isEmpty())
            m_table->selectionModel()->clear();
        else if (!current().isValid())
            search(m_search->text());
        showState();
    });
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    connect(&m_controller, &DocumentController::windowOpened, this, [this](DocumentWindow* window) {
        connect(&window->saving(), &SaveFlow::written, this, &CloudBrowser::renew);
    });
    for (DocumentWindow* window : m_controller.windows())
        connect(&window->saving(), &SaveFlow::written, this, &CloudBrowser::renew);
    connect(&m_environment.defaults, &UserDefaults::changed, this, [this](QLatin1StringView key) {
        if (key == QLatin1StringView(keys::dropboxPath.name))
            renew();
    });
}

QString CloudBrowser::folderOf(const DocumentEnvironment& environment)
{
    const QUrl folder = environment.defaults.value(keys::dropboxPath);
    return folder.scheme().isEmpty() ? folder.path() : folder.toLocalFile();
}

void CloudBrowser::present(DocumentWindow& opener)
{
    m_opener = &opener;
    m_search->clear();
    queryiCloud();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    if (!std::exchange(m_isPlaced, true))
        QWidget::move(opener.screen()->availableGeometry().center() - rect().center());
    show();
    raise();
    activateWindow();
    m_search->setFocus();
}

void CloudBrowser::queryiCloud()
{
    const QString folder = folderOf(m_environment);
    if (folder != m_folder)
        m_model->clear();
    m_folder = folder;
    m_isFolder = true;
    m_model->setRoot(QDir::cleanPath(folder));
    m_listing.queryiCloud(folder);
}

void CloudBrowser::renew()
{
    if (isVisible())
        queryiCloud();
}

// The list

QModelIndex CloudBrowser::current() const
{
    const QModelIndexList selected = m_table->selectionModel()->selectedRows();
    return selected.isEmpty() ? QModelIndex() : selected.front();
}

void CloudBrowser::search(const QString& text)
{
    m_filter->setText(text);
    // The first match is what Return opens.
    if (text.isEmpty())
        m_table->selectionModel()->clear();
    else
        m_table->setCurrentIndex(m_filter->index(0, 0));
    m_table->scrollToTop();
    showState();
}

void CloudBrowser::openiCloudDocument()
{
    const QModelIndex index = current();
    if (!index.isValid())
        return;
    const QString path = m_filter->entry(index).url.toLocalFile();
    close();
    m_controller.open({{path, {}}}, m_opener);
}

void CloudBrowser::showiCloudDocumentInFinder()
{
    if (const QModelIndex index = current(); index.isValid())
        revealInFileManager(m_filter->entry(index).url.toLocalFile(), &m_controller);
}

void CloudBrowser::showMenu(const QPoint& place)
{
    if (!m_table->indexAt(place).isValid())
        return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(m_open->text(), this, &CloudBrowser::openiCloudDocument);
    menu->addAction(m_reveal->text(), this, &CloudBrowser::showiCloudDocumentInFinder);
    menu->popup(m_table->viewport()->mapToGlobal(place));
}

// What is told

void CloudBrowser::showState()
{
    const QLocale locale;
    const int shown = m_filter->rowCount();
    const int all = m_model->rowCount();
    const bool isSearched = !m_search->text().isEmpty();
    QString note;
    if (shown == 0 && m_listing.isRunning())
        note = tr("Looking for files…");
    else if (!m_isFolder)
        note = tr("The folder “%1” cannot be read. Choose another one in the preferences, under "
                  "Advanced.")
                   .arg(QDir::toNativeSeparators(m_folder));
    else if (all == 0)
        note = tr("There are no text files in “%1” yet. Files that you save there, with an "
                  "extension, are listed here.")
                   .arg(QDir::toNativeSeparators(m_folder));
    else if (shown == 0)
        note = tr("No file matches “%1”.").arg(m_search->text());
    m_note->setText(note);
    m_preferences->setVisible(!m_listing.isRunning() && (!m_isFolder || all == 0));
    m_pages->setCurrentIndex(note.isEmpty() ? 0 : 1);
    m_status->setText(
        m_listing.isRunning() ? tr("Looking for files… %1 found")
                                    .arg(locale.toString(qlonglong(m_listing.iCloudArray().size())))
        : isSearched ? tr("%1 of %2 files").arg(locale.toString(shown), locale.toString(all))
        : all == 1   ? tr("1 file")
                     : tr("%1 files").arg(locale.toString(all)));
    m_stop->setVisible(m_listing.isRunning());
    m_open->setEnabled(current().isValid());
    m_reveal->setEnabled(current().isValid());
}

QString CloudBrowser::stateText() const
{
    return m_note->text().isEmpty() ? m_status->text() : m_note->text();
}

// Keys

void CloudBrowser::move(int key)
{
    const int rows = m_filter->rowCount();
    if (rows == 0)
        return;
    const int height = std::max(1, m_table->visualRect(m_filter->index(0, 0)).height());
    const int page = std::max(1, m_table->viewport()->height() / height - 1);
    const int at = current().isValid() ? current().row() : -1;
    int row = 0;
    switch (key) {
    case Qt::Key_Up:
        row = at < 0 ? rows - 1 : at - 1;
        break;
    case Qt::Key_Down:
        row = at + 1;
        break;
    case Qt::Key_PageUp:
        row = at - page;
        break;
    default:
        row = at + page;
    }
    const QModelIndex index = m_filter->index(std::clamp(row, 0, rows - 1), 0);
    m_table->setCurrentIndex(index);
    m_table->scrollTo(index);
}

bool CloudBrowser::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto& press = *static_cast<QKeyEvent*>(event);
        if (watched == m_search && movesInTable(press.key())) {
            move(press.key());
            return true;
        }
        if (watched == m_table && (press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter)) {
            openiCloudDocument();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void CloudBrowser::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void CloudBrowser::closeEvent(QCloseEvent* event)
{
    m_listing.cancel();
    m_environment.defaults.setValue(keys::cloudBrowserGeometry,
                                    QString::fromLatin1(saveGeometry().toBase64()));
    QWidget::closeEvent(event);
}

} // namespace quillory
