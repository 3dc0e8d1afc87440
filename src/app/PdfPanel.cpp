#include "app/PdfPanel.h"

#include "app/UserQuestions.h"
#include "foundation/Background.h"

#include <QAbstractScrollArea>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPluginLoader>
#include <QSaveFile>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QToolButton>

namespace quillory {

namespace {

constexpr QSize firstSize(640, 800); // pixels

QString pluginPath(const QString& folder)
{
    return folder + QStringLiteral("/quillory-pdf.so");
}

} // namespace

/// What another thread found.
struct PdfPanel::Read
{
    int number = 0;
    QString path;
    QByteArray bytes;
    QString error; ///< fit to follow a colon; empty where the file was read
};

PdfPanel::PdfPanel(QString plugins, UserQuestions& questions)
    : m_plugins(std::move(plugins)), m_questions(questions), m_note(new QLabel(this)),
      m_page(new QLabel(this)), m_bar(new QWidget(this))
{
    setWindowTitle(tr("Preview"));
    resize(firstSize.boundedTo(screen()->availableSize() * 0.9));
    build();
    tellNote(tr("Typeset the document to see its PDF here."));
}

PdfPanel::~PdfPanel() = default;

void PdfPanel::build()
{
    m_note->setTextFormat(Qt::PlainText);
    m_note->setAlignment(Qt::AlignCenter);
    m_note->setWordWrap(true);
    m_note->setMargin(24);
    m_note->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    auto* line = new QHBoxLayout(m_bar);
    line->setContentsMargins(6, 3, 6, 3);
    line->addWidget(m_page, 1);
    const auto add = [this](const QString& text, const QString& toolTip, const auto& keys,
                            auto act) {
        connect(addButton(text, toolTip), &QToolButton::clicked, this, act);
        for (const QKeySequence& key : keys)
            connect(new QShortcut(key, this), &QShortcut::activated, this, act);
    };
    const auto withViewer = [this](void (PdfViewer::*act)()) {
        return [this, act] {
            if (m_viewer)
                (m_viewer.get()->*act)();
        };
    };
    using Keys = QList<QKeySequence>;
    add(QStringLiteral("−"), tr("Smaller (Ctrl+−)"), Keys{Qt::CTRL | Qt::Key_Minus},
        withViewer(&PdfViewer::zoomOut));
    add(tr("Fit Width"), tr("As wide as the window (Ctrl+0)"), Keys{Qt::CTRL | Qt::Key_0},
        withViewer(&PdfViewer::fitWidth));
    add(QStringLiteral("+"), tr("Larger (Ctrl++)"),
        Keys{Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, withViewer(&PdfViewer::zoomIn));
    add(tr("Save PDF…"), tr("Copy the PDF to another place (Ctrl+S)"), Keys{QKeySequence::Save},
        [this] { savePDF(); });
    connect(new QShortcut(Qt::Key_Home, this), &QShortcut::activated, this,
            [this] { scrollTo(false); });
    connect(new QShortcut(Qt::Key_End, this), &QShortcut::activated, this,
            [this] { scrollTo(true); });
    for (const QKeySequence& key : Keys{Qt::CTRL | Qt::Key_W, Qt::Key_Escape, Qt::Key_F9})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_bar);
    layout->addWidget(m_note, 1);
}

QToolButton* PdfPanel::addButton(const QString& text, const QString& toolTip)
{
    auto* button = new QToolButton(m_bar);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus); // the keyboard stays with the pages
    m_bar->layout()->addWidget(button);
    return button;
}

void PdfPanel::load(const QString& path)
{
    runInBackground(
        this,
        [path, number = ++m_reading, plugin = pluginPath(m_plugins)] {
            Read read{number, path, {}, {}};
            QFile file(path);
            if (file.open(QIODevice::ReadOnly))
                read.bytes = file.readAll();
            if (file.error() != QFile::NoError)
                read.error = file.errorString();
            // It stays loaded; the large library that it uses is what takes long.
            QPluginLoader(plugin).load();
            return read;
        },
        [this](const Read& read) {
            if (read.number != m_reading)
                return;
            take(read);
            Q_EMIT loaded();
        });
}

void PdfPanel::take(const Read& read)
{
    QPluginLoader plugin(pluginPath(m_plugins));
    auto* factory = qobject_cast<PdfViewerFactory*>(plugin.instance());
    QString error = read.error;
    std::unique_ptr<PdfViewer> viewer;
    if (error.isEmpty() && factory)
        viewer = factory->newViewer(read.bytes, error);
    const std::optional<PdfViewer::Place> place =
        m_viewer && read.path == m_path ? std::optional(m_viewer->place()) : std::nullopt;
    const bool hadFocus = !m_viewer || m_viewer->widget()->hasFocus();
    m_viewer = std::move(viewer);
    m_pdf = read.bytes;
    m_path = read.path;
    const QString shown = QDir::toNativeSeparators(read.path);
    if (!factory) {
        tellNote(tr("“%1” cannot be shown: the PDF preview is not installed (%2). Open it in "
                    "another program.")
                     .arg(shown, plugin.errorString()));
    } else if (!m_viewer) {
        tellNote(tr("“%1” cannot be shown: %2. Typeset the document again.").arg(shown, error));
    } else {
        m_note->hide();
        layout()->addWidget(m_viewer->widget());
        m_viewer->widget()->setAccessibleName(tr("Pages of %1").arg(QFileInfo(shown).fileName()));
        m_viewer->widget()->show();
        layout()->activate();
        if (place)
            m_viewer->show(*place);
        if (hadFocus)
            m_viewer->widget()->setFocus();
        m_viewer->setPageChanged([this] { showPage(); });
        m_bar->show();
        showPage();
    }
}

void PdfPanel::tellNote(const QString& note)
{
    m_bar->hide();
    m_note->setText(note);
    m_note->show();
}

QString PdfPanel::note() const
{
    return m_note->isHidden() ? QString() : m_note->text();
}

void PdfPanel::showPage()
{
    m_page->setText(
        tr("Page %1 of %2").arg(m_viewer->currentPage() + 1).arg(m_viewer->pageCount()));
}

void PdfPanel::scrollTo(bool end)
{
    if (!m_viewer)
        return;
    if (const auto* pages = qobject_cast<QAbstractScrollArea*>(m_viewer->widget())) {
        QScrollBar& bar = *pages->verticalScrollBar();
        bar.setValue(end ? bar.maximum() : 0);
    }
}

void PdfPanel::present()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void PdfPanel::savePDF()
{
    if (!m_viewer)
        return;
    m_questions.askForSavePath(this, tr("Save PDF"), m_path, [this](const QString& chosen) {
        if (!chosen.isEmpty() && m_viewer)
            write(chosen);
    });
}

void PdfPanel::write(const QString& path)
{
    runInBackground(
        this,
        [path, pdf = m_pdf]() -> QString {
            QSaveFile file(path);
            const bool written =
                file.open(QIODevice::WriteOnly) && file.write(pdf) == pdf.size() && file.commit();
            return written ? QString() : file.errorString();
        },
        [this, path](const QString& error) {
            if (!error.isEmpty())
                m_questions.tell(this, tr("The PDF was not saved."),
                                 tr("“%1” could not be written: %2. Choose another place, or make "
                                    "room there.")
                                     .arg(QDir::toNativeSeparators(path), error),
                                 [] {});
        });
}

} // namespace quillory
