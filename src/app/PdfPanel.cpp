#include "app/PdfPanel.h"

#include "app/PagesPane.h"
#include "app/PdfFindBar.h"
#include "app/UserQuestions.h"
#include "foundation/Background.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPluginLoader>
#include <QSaveFile>
#include <QScreen>
#include <QShortcut>

namespace quillory {

namespace {

constexpr QSize firstSize(760, 840); // pixels

QString pluginPath(const QString& folder)
{
    return folder + QStringLiteral("/quillory-pdf.so");
}

/// Its end waits for what is being drawn of any PDF, so it is left to another thread, whoever holds
/// \a file last.
std::shared_ptr<PdfFile> releasedInBackground(const std::shared_ptr<PdfFile>& file)
{
    if (!file)
        return {};
    return {file.get(),
            [owner = file](PdfFile*) mutable { releaseInBackground(std::move(owner)); }};
}

} // namespace

/// What another thread found.
struct PdfPanel::Read
{
    int number = 0;
    QString path;
    QByteArray bytes = {};
    QString error = {};         ///< fit to follow a colon; empty where the file was read
    QString missingPlugin = {}; ///< why it could not be loaded
    std::shared_ptr<PdfFile> file = {};
};

PdfPanel::PdfPanel(QString plugins, UserQuestions& questions)
    : m_plugins(std::move(plugins)), m_questions(questions), m_note(new QLabel(this)),
      m_pages(new PagesPane(this)), m_findBar(new PdfFindBar(m_pages->view(), this))
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
    using Keys = QList<QKeySequence>;
    m_pages->addTool(tr("Find…"), tr("Find a text"), Keys{QKeySequence::Find},
                     [this] { m_findBar->open(); });
    m_pages->addTool(tr("Save PDF…"), tr("Copy the PDF to another place"), Keys{QKeySequence::Save},
                     [this] { savePDF(); });
    const auto onKey = [this](const QKeySequence& key, auto act) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, act);
    };
    onKey(Qt::Key_F3, [this] { m_findBar->findNext(); });
    onKey(Qt::SHIFT | Qt::Key_F3, [this] { m_findBar->findNext(-1); });
    onKey(Qt::CTRL | Qt::Key_W, [this] { close(); });
    onKey(Qt::Key_F9, [this] { close(); });
    onKey(Qt::Key_Escape, [this] {
        if (m_findBar->isVisible())
            m_findBar->close();
        else
            close();
    });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_pages, 1);
    layout->addWidget(m_findBar);
    layout->addWidget(m_note, 1);
}

void PdfPanel::load(const QString& path)
{
    runInBackground(
        this,
        [path, number = ++m_reading, pluginFile = pluginPath(m_plugins)] {
            Read read{number, path};
            QFile file(path);
            if (file.open(QIODevice::ReadOnly))
                read.bytes = file.readAll();
            if (file.error() != QFile::NoError)
                read.error = file.errorString();
            QPluginLoader plugin(pluginFile);
            auto* factory = qobject_cast<PdfFileFactory*>(plugin.instance());
            if (!factory)
                read.missingPlugin = plugin.errorString();
            else if (read.error.isEmpty())
                read.file = factory->open(read.bytes, read.error);
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
    const bool isOther = read.path != m_path;
    m_file = releasedInBackground(read.file);
    m_pdf = read.bytes;
    m_path = read.path;
    const QString shown = QDir::toNativeSeparators(read.path);
    if (!read.missingPlugin.isEmpty()) {
        tellNote(tr("“%1” cannot be shown: the PDF preview is not installed (%2). Open it in "
                    "another program.")
                     .arg(shown, read.missingPlugin));
    } else if (!m_file) {
        tellNote(
            tr("“%1” cannot be shown: %2. Typeset the document again.").arg(shown, read.error));
    } else {
        const bool wasHidden = m_pages->isHidden();
        m_note->hide();
        m_pages->show();
        m_pages->setRenderer(std::make_unique<PageRenderer>(m_file));
        m_pages->setPageSizes(m_file->pageSizes());
        m_pages->view().setAccessibleName(tr("Pages of %1").arg(QFileInfo(shown).fileName()));
        if (isOther)
            m_pages->view().goToPage(0);
        if (wasHidden)
            m_pages->view().setFocus();
    }
    m_findBar->setFile(m_file);
}

void PdfPanel::tellNote(const QString& note)
{
    m_pages->hide();
    m_findBar->close();
    m_pages->setRenderer(nullptr);
    m_note->setText(note);
    m_note->show();
}

QString PdfPanel::note() const
{
    return m_note->isHidden() ? QString() : m_note->text();
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
    if (!m_file)
        return;
    m_questions.askForSavePath(this, tr("Save PDF"), m_path, [this](const QString& chosen) {
        if (!chosen.isEmpty() && m_file)
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
