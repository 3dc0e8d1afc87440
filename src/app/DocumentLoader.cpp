#include "app/DocumentLoader.h"

#include "app/StandardInput.h"
#include "document/DocumentType.h"
#include "document/FileBytes.h"
#include "foundation/Background.h"

#include <QFileInfo>
#include <QPointer>
#include <QProgressDialog>
#include <QThreadPool>

namespace quillory {

namespace {

constexpr int patience = 300; ///< milliseconds before the dialog shows

} // namespace

DocumentLoader::~DocumentLoader()
{
    for (const auto& cancelled : m_atWork) {
        if (const Cancelled flag = cancelled.lock())
            *flag = true;
    }
    m_pool.waitForDone();
    backgroundPool().waitForDone();
}

DocumentLoader::Cancelled DocumentLoader::newFlag()
{
    auto cancelled = std::make_shared<std::atomic_bool>(false);
    std::erase_if(m_atWork, [](const auto& flag) { return flag.expired(); });
    m_atWork.push_back(cancelled);
    return cancelled;
}

std::shared_ptr<GradualRead> DocumentLoader::begin(const QString& path) const
{
    const bool isText = DocumentType::ofFile(path) == DocumentType::text;
    return isText ? GradualRead::begin(path, m_options) : nullptr;
}

DocumentLoader::Cancelled
DocumentLoader::goOn(const std::shared_ptr<GradualRead>& reading, QObject* context,
                     const std::function<void(const GradualRead::Progress&)>& more,
                     const std::function<void(const GradualRead::Outcome&)>& ended)
{
    Cancelled cancelled = newFlag();
    // What \a call holds may be large and not wanted any more, so it is freed elsewhere.
    const auto post = [guard = QPointer<QObject>(context), cancelled](auto call) {
        const auto kept = std::make_shared<decltype(call)>(std::move(call));
        QMetaObject::invokeMethod(
            qApp,
            [guard, cancelled, kept]() mutable {
                if (guard && !*cancelled)
                    (*kept)();
                releaseInBackground(std::move(kept));
            },
            Qt::QueuedConnection);
    };
    m_pool.start([reading, cancelled, post, more, ended] {
        const auto report = [&](const GradualRead::Progress& progress) {
            post([more, progress] { more(progress); });
        };
        auto outcome = std::make_shared<GradualRead::Outcome>(reading->finish(*cancelled, report));
        if (!*cancelled)
            post([ended, outcome = std::move(outcome)] { ended(*outcome); });
    });
    return cancelled;
}

void DocumentLoader::load(const QString& path, QWidget* window, const Done& done)
{
    const QString type = DocumentType::ofFile(path);
    if (isQuickToRead(path)) {
        done(readDocument(path, type));
        return;
    }
    readAside(QFileInfo(path).fileName(), window, done,
              [path, type](const std::atomic_bool& cancelled) {
                  return readDocument(path, type, &cancelled);
              });
}

void DocumentLoader::loadStandardInput(QWidget* window, const Done& done)
{
    readAside(tr("standard input"), window, done, readStandardInput);
}

void DocumentLoader::readAside(const QString& name, QWidget* window, const Done& done,
                               const std::function<ReadResult(const std::atomic_bool&)>& read)
{
    const Cancelled cancelled = newFlag();

    // Files larger than a timer's patience are rare, and a pipe's end cannot be foreseen: no dialog
    // knows how far it is.
    QPointer<QProgressDialog> dialog = new QProgressDialog(window);
    dialog->setWindowTitle(QStringLiteral("Quillory"));
    dialog->setLabelText(tr("Opening %1…").arg(name));
    dialog->setRange(0, 0);
    dialog->setMinimumDuration(patience);
    dialog->setValue(0);
    connect(dialog, &QProgressDialog::canceled, this, [cancelled, dialog, done] {
        *cancelled = true;
        dialog->deleteLater();
        done(std::nullopt);
    });
    runInBackground(
        this, [read, cancelled] { return read(*cancelled); },
        [cancelled, dialog, done](const ReadResult& result) {
            if (*cancelled)
                return;
            // The window comes before the dialog goes, or the program might seem to end.
            done(result);
            if (dialog) {
                dialog->disconnect();
                delete dialog;
            }
        });
}

} // namespace quillory
