#pragma once

#include "document/FileIdentity.h"
#include "text/ByteLayout.h"
#include "text/TextRange.h"

#include <QDateTime>
#include <QString>
#include <optional>

namespace quillory {

/// What a document is beside its text, as a journal of its edits knows it.
struct JournalForm
{
    QString path; ///< empty for a document that was never saved
    QString type; ///< one of DocumentType
    StringEncoding encoding = StringEncoding::none;
    int lbFormat = 0; ///< see LineBreaks.h
    ByteLayout layout;
    QString definitionTitle;
    QString baseURL;
    bool isPlistFile = false;
    int plistKind = 0;
    int untitledNumber = 0;
    /// Of the file that the text was read from, or saved to.
    std::optional<FileIdentity> identity;
    QString
        recoveryRecord; ///< that holds the text too, after a save that failed; see RecoveryStore

    bool operator==(const JournalForm& other) const;
};

/// What the first record of a journal tells.
struct JournalStart
{
    JournalForm form;
    QDateTime time;         ///< when the first edit was made, in UTC
    TextOffset length = 0;  ///< of the text before it, in UTF-16 code units
    bool holdsText = false; ///< that text is in the journal, and not only in the file
};

/// As they stand in a journal.
QByteArray encoded(const JournalForm& form);
QByteArray encoded(const JournalStart& start);
JournalForm decodedForm(const QByteArray& bytes);
JournalStart decodedStart(const QByteArray& bytes);

} // namespace quillory
