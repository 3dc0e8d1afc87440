#pragma once

#include "text/TextSnapshot.h"

#include <QByteArray>
#include <array>

namespace quillory {

/// The records that a journal of edits is made of. After the eight bytes of journalMagic stands one
/// after the other:
///   size of the payload (4 bytes), checksum (8 bytes), payload.
/// The payload is a byte, the kind, whose highest bit ends a batch, and what belongs to the kind:
///   Start, Form: a CBOR map; see JournalForm
///   Edit: location and removed length (8 bytes each), context (4), bytes per unit (1), units.
/// Numbers are little-endian, locations and lengths UTF-16 code units. Units of one byte are those
/// below U+0100. The checksum is the beginning of the BLAKE2b digest (RFC 7693) of 20 bytes of the
/// checksum before it, the size and the payload: so no record fits but after its predecessor. What
/// is read counts batch by batch.
enum class JournalRecordKind : quint8
{
    Start = 1, ///< the first one
    Form = 2,
    Edit = 3,
};

inline constexpr QByteArrayView journalMagic("QlryJrn1");

using JournalChecksum = std::array<char, 8>;

/// Of a record that may lead a journal. Longer edits are several records.
inline constexpr TextOffset longestJournalPiece = 1 << 18;
inline constexpr qsizetype largestJournalPayload = 2 * longestJournalPiece + 64;

inline constexpr qsizetype journalRecordHead = 4 + 8;

/// Puts a record after those in \a target, the last of which has the checksum \a last; that becomes
/// the new one's.
void appendJournalRecord(QByteArray& target, JournalChecksum& last, JournalRecordKind kind,
                         bool endsBatch, QByteArrayView body);

/// Whether \a record, a whole one, follows the one with the checksum \a last, which then becomes
/// its own.
bool followsJournalRecord(QByteArrayView record, JournalChecksum& last);

/// The body of an Edit.
struct JournalPiece
{
    TextRange replaced; ///< in the text before the edit
    quint32 context = 0;
    QString inserted;

    QByteArray encoded() const;
    /// Nothing when \a body makes no sense.
    static std::optional<JournalPiece> decoded(QByteArrayView body);

    /// Of the characters before \a location, by which a text that is not the one that was edited
    /// is found out.
    static quint32 contextOf(const TextSnapshot& text, TextOffset location);
};

} // namespace quillory
