#pragma once

#include <QString>
#include <QVector>

namespace quillory {

class DocumentWindow;
struct RecoveredDocument;

/// Tells in \a window what was brought back, with the ways out. \a id is that of the journal, empty
/// for a record.
void showRecoveryMessage(DocumentWindow& window, const RecoveredDocument& recovered,
                         const QString& id);

/// Tells in \a window, one like any other, of journals that could not be read and are kept aside.
void showDamagedJournals(DocumentWindow& window, const QVector<RecoveredDocument>& damaged);

/// Tells when what is edited in \a window cannot be kept safe, and until it is.
void watchJournal(DocumentWindow& window);

} // namespace quillory
