#pragma once

#include "text/TextSnapshot.h"

#include <QMimeData>

namespace quillory {

/// Plain text for the clipboard or for a drag that holds a snapshot: however much text it is, it
/// costs something only when somebody asks for it.
class SnapshotMimeData : public QMimeData
{
    Q_OBJECT

public:
    explicit SnapshotMimeData(TextSnapshot text) : m_text(std::move(text)) {}

    const TextSnapshot& snapshot() const { return m_text; }

    bool hasFormat(const QString& mimeType) const override;
    QStringList formats() const override;

    /// The text of any \a data; a snapshot from this program without a copy.
    static TextSnapshot textOf(const QMimeData& data);

protected:
    QVariant retrieveData(const QString& mimeType, QMetaType type) const override;

private:
    TextSnapshot m_text;
};

} // namespace quillory
