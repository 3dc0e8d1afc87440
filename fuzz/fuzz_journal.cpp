// Whatever bytes a journal of edits has, reading them ends, and gives a text or none. The input is
// a list of records to which the right checksums are put, so that what is in them is reached, and
// then bytes as they come.

#include "document/JournalReader.h"

#include <algorithm>
#include <cstdlib>

using namespace quillory;

namespace {

void readAll(const QByteArray& bytes)
{
    const JournalReader reader([&](char* target, qint64 size, qint64 offset) {
        const qint64 start = std::min<qint64>(offset, bytes.size());
        const qint64 count = std::min<qint64>(size, bytes.size() - start);
        std::copy_n(bytes.constData() + start, count, target);
        return count;
    });
    if (!reader.isReadable())
        return;
    const auto replay = reader.replay(TextSnapshot(u"the text before the edits"));
    if (reader.end().offset > bytes.size() ||
        (replay && reader.start().holdsText && replay->text.length() > bytes.size()))
        std::abort();
    (void)reader.pieces();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    readAll(input);
    readAll(journalMagic.toByteArray() + input);

    QByteArray journal = journalMagic.toByteArray();
    JournalChecksum last = {};
    while (input.size() >= 2) {
        const auto kind = JournalRecordKind(1 + quint8(input[0]) % 3);
        const bool ends = (quint8(input[0]) & 0x80) != 0;
        const qsizetype length = std::min<qsizetype>(quint8(input[1]), input.size() - 2);
        appendJournalRecord(journal, last, kind, ends, QByteArrayView(input).sliced(2, length));
        input.remove(0, 2 + length);
    }
    readAll(journal);
    return 0;
}
