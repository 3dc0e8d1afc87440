#pragma once

#include <QStringList>

class QSettings;

namespace quillory {

/// The files opened and saved last, the newest first, kept in a state file that several instances
/// of the editor may share.
class RecentDocuments
{
public:
    static constexpr qsizetype limit = 20;

    /// \a state must outlive this.
    explicit RecentDocuments(QSettings& state) : m_state(state) {}

    /// The files that are still there.
    QStringList paths() const;
    void note(const QString& path);
    void clear();

private:
    QSettings& m_state;
};

} // namespace quillory
