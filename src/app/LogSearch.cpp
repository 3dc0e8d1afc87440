#include "app/LogSearch.h"

namespace quillory {

namespace {

constexpr TextOffset pieceLength = 1 << 16; // code units looked through at a time

/// The first place that begins in [\a start, \a end); -1 for none.
TextOffset firstIn(const TextSnapshot& text, const QString& needle, TextOffset start,
                   TextOffset end)
{
    for (TextOffset at = start; at < end; at += pieceLength) {
        const TextOffset last =
            std::min(std::min(at + pieceLength, end) + needle.size() - 1, text.length());
        const QString piece = text.string(TextRange::between(at, last));
        const qsizetype place = piece.indexOf(needle, 0, Qt::CaseInsensitive);
        if (place >= 0)
            return at + place;
    }
    return -1;
}

TextOffset lastIn(const TextSnapshot& text, const QString& needle, TextOffset start, TextOffset end)
{
    for (TextOffset until = end; until > start; until -= pieceLength) {
        const TextOffset at = std::max(start, until - pieceLength);
        const TextOffset last = std::min(until + needle.size() - 1, text.length());
        const QString piece = text.string(TextRange::between(at, last));
        const qsizetype place = piece.lastIndexOf(needle, -1, Qt::CaseInsensitive);
        if (place >= 0)
            return at + place;
    }
    return -1;
}

} // namespace

TextRange findInLog(const TextSnapshot& text, const QString& needle, TextOffset from,
                    bool backwards)
{
    if (needle.isEmpty())
        return {from, 0};
    const auto search = backwards ? lastIn : firstIn;
    TextOffset found =
        backwards ? search(text, needle, 0, from) : search(text, needle, from, text.length());
    if (found < 0)
        found =
            backwards ? search(text, needle, from, text.length()) : search(text, needle, 0, from);
    return found < 0 ? TextRange{from, 0} : TextRange{found, needle.size()};
}

} // namespace quillory
