#pragma once

#include "document/DocumentReader.h"
#include "document/GradualRead.h"

#include <QObject>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <memory>

class QWidget;

namespace quillory {

/// Reads files for new windows: small ones at once, for the fastest first paint; of large texts the
/// beginning at once, and the rest on another thread; all others on another thread too, behind a
/// dialog with a button to cancel once that takes a while.
class DocumentLoader : public QObject
{
    Q_OBJECT

public:
    /// Nothing when the user cancelled.
    using Done = std::function<void(std::optional<ReadResult>)>;

    using Cancelled = std::shared_ptr<std::atomic_bool>;

    explicit DocumentLoader(QObject* parent = nullptr) : QObject(parent) {}
    /// Ends what is being read, without calling back, and waits until it has ended.
    ~DocumentLoader() override;

    /// How large texts are read.
    void setOptions(const GradualRead::Options& options) { m_options = options; }
    /// Reads the beginning of the file at \a path; null for one that is to be loaded as a whole.
    std::shared_ptr<GradualRead> begin(const QString& path) const;
    /// Reads the rest. Both functions are called on this thread, until \a context is gone or the
    /// flag that is answered is set.
    Cancelled goOn(const std::shared_ptr<GradualRead>& reading, QObject* context,
                   const std::function<void(const GradualRead::Progress&)>& more,
                   const std::function<void(const GradualRead::Outcome&)>& ended);

    /// \a window is where the dialog belongs, or null. \a done may be called before this returns.
    void load(const QString& path, QWidget* window, const Done& done);
    /// Reads standard input to its end; the result has no path.
    void loadStandardInput(QWidget* window, const Done& done);

private:
    Cancelled newFlag();
    void readAside(const QString& name, QWidget* window, const Done& done,
                   const std::function<ReadResult(const std::atomic_bool&)>& read);

    GradualRead::Options m_options;
    std::vector<std::weak_ptr<std::atomic_bool>> m_atWork;
    QThreadPool m_pool; ///< of its own, so that a save does not wait for a long reading
};

} // namespace quillory
