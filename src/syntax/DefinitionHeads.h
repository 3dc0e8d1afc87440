#pragma once

#include "foundation/PropertyList.h"

#include <QDir>
#include <QString>
#include <optional>

class QFileInfo;

namespace quillory {

/// Remembers what tells definitions apart, so that choosing one among many does not read them all:
/// word lists make their files long. A file that was written since is not remembered.
class DefinitionHeads
{
public:
    /// \a file keeps the heads of the definitions in \a folder from one start of the program to the
    /// next; without a name nothing is kept. A file that cannot be read is as good as an empty one.
    DefinitionHeads(QString file, const QString& folder);

    /// The head of the definition in \a definition; none where that is not, or no longer, known.
    std::optional<PropertyList> head(const QFileInfo& definition);
    void remember(const QFileInfo& definition, const PropertyList& head);

    /// Where the copy of the whole definition belongs; empty where nothing is kept.
    QString copyOf(const QFileInfo& definition) const;

    /// Writes down, where that is another than was read, what was asked for or remembered. That it
    /// cannot be written only costs time.
    void save() const;

private:
    QString keyOf(const QFileInfo& definition) const;

    QString m_file;
    QDir m_folder;
    PropertyList::Dictionary m_read;
    PropertyList::Dictionary m_used;
};

} // namespace quillory
