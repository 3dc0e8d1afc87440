#pragma once

#include "document/GradualRead.h"

#include <QObject>
#include <QTimer>
#include <functional>

class QWidget;

namespace quillory {

class Document;
class DocumentLoader;
class ProgressBar;

/// Reads the rest of a large file while its window shows what is there. A strip tells how far it
/// is when it takes a while; its button, or Escape in the window, cancels.
class LoadFlow : public QObject
{
    Q_OBJECT

public:
    /// Takes less when nobody would see the strip.
    static constexpr std::chrono::milliseconds patience{200};

    LoadFlow(Document& document, ProgressBar& bar, QWidget& window);
    /// What is being read is given up.
    ~LoadFlow() override;

    /// \a document has adopted the beginning of \a reading.
    void start(const std::shared_ptr<GradualRead>& reading, DocumentLoader& loader);
    /// Stops reading, for good, and says so.
    void cancel();
    /// The same for a window that closes, which needs no word of it.
    void stop();

    /// True when line \a number, counted from 1, is still to be read; \a go, which may ask again,
    /// is called when it is there, or all is. Of several the last one counts.
    bool postpones(qint64 number, const std::function<void()>& go);

Q_SIGNALS:
    /// All is there.
    void loaded();
    void cancelled();
    /// The document is of no use any more.
    void failed(const QString& message);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take(const GradualRead::Progress& progress);
    void finish(const GradualRead::Outcome& outcome);
    void goOn();

    Document& m_document;
    ProgressBar& m_bar;
    QWidget& m_window;
    QTimer m_patience;
    std::shared_ptr<std::atomic_bool> m_cancelled; ///< null when nothing is being read
    std::function<void()> m_go;                    ///< what was postponed
};

} // namespace quillory
