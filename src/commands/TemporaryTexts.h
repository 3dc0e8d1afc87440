#pragma once

#include "foundation/Result.h"
#include "text/StringEncoding.h"
#include "text/TextEncoder.h"
#include "text/TextSnapshot.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace quillory {

/// The files in the caches folder through which a document hands its text to programs. Nobody but
/// the user can read them, and they go when the document closes, all but the newest of many
/// already before; what a crash left behind goes after some days.
class TemporaryTexts : public QObject
{
    Q_OBJECT

public:
    /// \a folder need not exist.
    explicit TemporaryTexts(QString folder, QObject* parent = nullptr);
    ~TemporaryTexts() override;

    /// A path in the folder, which is made, at which there is nothing yet: the whole seconds since
    /// 1 January 2001 (UTC), a number from 1, and \a mainExtension behind a dot.
    QString temporaryPath(const QString& mainExtension) const;

    /// Writes \a text in \a encoding to such a path, on another thread, and tells \a done the path
    /// or what went wrong; a document that is closed meanwhile tells nothing and leaves no file.
    void write(const TextSnapshot& text, StringEncoding encoding, const QString& mainExtension,
               const std::function<void(const Result<QString>& path)>& done);

    /// Gives bytes to the sink, on another thread, until it refuses; or says why there are none.
    using Production = std::function<std::optional<EncodingFailure>(const ByteSink&)>;
    /// The same with bytes that are made while they are written.
    void write(const Production& produce, const QString& mainExtension,
               const std::function<void(const Result<QString>& path)>& done);

    /// Removes a file of this document's that is not needed any more.
    void remove(const QString& path);

private:
    QString m_folder;
    QStringList m_written;
    bool m_hasPruned = false;
};

} // namespace quillory
