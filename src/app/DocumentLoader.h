#pragma once

#include "document/DocumentReader.h"

#include <QObject>
#include <atomic>
#include <functional>
#include <memory>

class QWidget;

namespace quillory {

/// Reads files for new windows: small ones at once, for the fastest first paint; all others on
/// another thread, behind a dialog with a button to cancel once that takes a while.
class DocumentLoader : public QObject
{
    Q_OBJECT

public:
    /// Nothing when the user cancelled.
    using Done = std::function<void(std::optional<ReadResult>)>;

    explicit DocumentLoader(QObject* parent = nullptr) : QObject(parent) {}
    /// Ends what is being read, without calling back, and waits until it has ended.
    ~DocumentLoader() override;

    /// \a window is where the dialog belongs, or null. \a done may be called before this returns.
    void load(const QString& path, QWidget* window, const Done& done);
    /// Reads standard input to its end; the result has no path.
    void loadStandardInput(QWidget* window, const Done& done);

private:
    using Cancelled = std::shared_ptr<std::atomic_bool>;

    void readAside(const QString& name, QWidget* window, const Done& done,
                   const std::function<ReadResult(const std::atomic_bool&)>& read);

    std::vector<std::weak_ptr<std::atomic_bool>> m_atWork;
};

} // namespace quillory
