#include "app/VersionsWindow.h"

#include "app/ComparisonWindow.h"
#include "app/DocumentWindow.h"
#include "app/VersionsFlow.h"
#include "document/Document.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QScreen>
#include <QShortcut>

namespace quillory {

namespace {

constexpr QSize firstSize(1240, 760); // pixels
constexpr int listWidth = 210;        // pixels

} // namespace

VersionsWindow::VersionsWindow(DocumentWindow& window, VersionsFlow& flow,
                               const QVector<FileVersion>& versions)
    : m_window(window), m_flow(flow), m_versions(versions), m_list(new QListWidget(this)),
      m_note(new QLabel(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Versions — %1").arg(window.document().displayName()));
    resize(firstSize.boundedTo(screen()->availableSize() * 0.9));
    connect(&window, &QObject::destroyed, this, [this] { delete this; });
    build();
    if (!m_versions.isEmpty())
        m_list->setCurrentRow(0);
    m_list->setFocus();
}

VersionsWindow::~VersionsWindow()
{
    stopReading();
}

void VersionsWindow::build()
{
    const QLocale locale;
    for (const FileVersion& version : m_versions) {
        auto* item = new QListWidgetItem(VersionsFlow::timeOf(version), m_list);
        item->setToolTip(locale.formattedDataSize(version.size));
    }
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setFixedWidth(listWidth);
    m_list->setSpacing(3);
    m_list->setAccessibleName(tr("Versions"));
    m_note->setText(m_versions.isEmpty() ? tr("No versions are kept of this file yet.\nOne is "
                                              "kept of what it holds each time it is changed.")
                                         : tr("Reading…"));
    m_note->setAlignment(Qt::AlignCenter);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_list);
    layout->addWidget(m_note, 1);
    connect(m_list, &QListWidget::currentRowChanged, this, &VersionsWindow::choose);
    for (const QKeySequence& key :
         {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
}

void VersionsWindow::stopReading()
{
    if (m_stopped)
        *m_stopped = true;
}

void VersionsWindow::choose(int row)
{
    stopReading();
    if (row < 0)
        return;
    m_stopped = std::make_shared<std::atomic_bool>(false);
    m_flow.read(
        m_versions.at(row),
        [this, version = m_versions.at(row)](const ReadResult* result) {
            if (result)
                compare(version, *result->text);
            else
                m_note->setText(tr("This version could not be read."));
        },
        m_stopped);
}

void VersionsWindow::compare(const FileVersion& version, const TextSnapshot& text)
{
    delete m_comparison;
    const QString name = m_window.document().displayName();
    m_comparison = new ComparisonWindow(
        m_window, tr("%1, %2").arg(name, VersionsFlow::timeOf(version)), text,
        tr("%1 in its window").arg(name), m_window.document().completeString(),
        {{tr("&Restore This Version"), tr("Put it in the place of the text; Undo brings that back"),
          [flow = QPointer(&m_flow), version] {
              if (flow)
                  flow->restore(version);
          }}});
    m_note->hide();
    static_cast<QHBoxLayout*>(layout())->addWidget(m_comparison, 1);
    m_comparison->show();
    layout()->activate();
}

} // namespace quillory
