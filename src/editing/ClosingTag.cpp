#include "editing/ClosingTag.h"

#include "text/TextReader.h"
#include "text/TextSearch.h"

#include <array>

namespace quillory {

namespace {

// Tags that never need closing.
constexpr std::array<QStringView, 3> fourUnits{u"<br>", u"<hr>", u"<!--"};
constexpr std::array<QStringView, 11> longer{
    u"<img ",  u"<br/>",  u"<br />",  u"<hr />",  u"<area ",  u"<base ",
    u"<link ", u"<meta ", u"<frame ", u"<input ", u"<param ",
};

bool isSkipped(TextReader& text, TextOffset tag)
{
    std::array<QChar, 7> units;
    const qsizetype length = std::min<qsizetype>(qsizetype(units.size()), text.length() - tag);
    for (qsizetype i = 0; i < length; ++i)
        units[size_t(i)] = text.at(tag + i);
    const QStringView found(units.data(), length);
    const auto begins = [&](QStringView prefix) {
        return found.startsWith(prefix, Qt::CaseInsensitive);
    };
    if (std::any_of(longer.begin(), longer.end(), begins) ||
        std::any_of(fourUnits.begin(), fourUnits.end(), begins))
        return true;
    // Instructions and blocks of a server count wherever they begin within four units.
    const QStringView four = found.left(4);
    return four.size() == 4 && (four.contains(u"<?") || four.contains(u"<%"));
}

/// The first ">" of \a within; -1 where there is none. Mostly it is near.
TextOffset tagEnd(TextReader& text, TextRange within)
{
    constexpr TextOffset nearby = 64;
    const TextOffset close = std::min(within.end(), within.location + nearby);
    for (TextOffset offset = within.location; offset < close; ++offset) {
        if (text.at(offset) == u'>')
            return offset;
    }
    return find(text.text(), u">", TextRange::between(close, within.end()));
}

/// Finds units backwards; one that is near costs little.
class BackwardsReader
{
public:
    explicit BackwardsReader(const TextSnapshot& text) : m_text(text), m_pieces(text.root().data())
    {}

    /// The last place of \a unit before \a end; -1 where there is none.
    TextOffset last(char unit, TextOffset end)
    {
        if (end == 0)
            return -1;
        const TextPiece piece = m_pieces.at(end - 1);
        const TextOffset index = std::visit(
            [&](auto units) {
                return units.first(end - piece.location).lastIndexOf(QLatin1Char(unit));
            },
            piece.units);
        if (index >= 0)
            return piece.location + index;
        return findBackwards(m_text, QString(QLatin1Char(unit)), {0, piece.location});
    }

private:
    const TextSnapshot& m_text;
    TextPieces m_pieces;
};

/// "</name>" for the tag at \a tag, whose name ends at a space, ">" or "/", or at \a end.
TextSnapshot closingTag(const TextSnapshot& text, TextOffset tag, TextOffset end)
{
    for (const QStringView stop : {u" ", u">", u"/"}) {
        const TextOffset found = find(text, stop, TextRange::between(tag, end));
        end = found < 0 ? end : found;
    }
    const TextSnapshot name = text.slice(TextRange::between(tag, end));
    return name.replacing(std::array<TextEdit, 2>{
        TextEdit{{1, 0}, TextSnapshot(u"/")}, TextEdit{{name.length(), 0}, TextSnapshot(u">")}});
}

} // namespace

ClosingTag closingTagBefore(const TextSnapshot& text, TextOffset caret, qsizetype& most)
{
    BackwardsReader backwards(text);
    const TextOffset close = backwards.last('>', caret);
    if (close < 0)
        return {};
    TextReader reader(text);
    TextOffset end = close; // of the tag: the first ">" at or behind it
    qsizetype depth = 0;
    for (TextOffset tag = close, searched = close; (tag = backwards.last('<', tag)) >= 0;) {
        if (most-- == 0)
            return {TagSearch::GaveUp, {}};
        const TextOffset nearer = tagEnd(reader, TextRange::between(tag, searched));
        end = nearer < 0 ? end : nearer;
        searched = tag;
        if (isSkipped(reader, tag) || reader.at(end - 1) == u'/')
            continue;
        if (reader.at(tag + 1) == u'/')
            ++depth;
        else if (depth == 0)
            return {TagSearch::Found, closingTag(text, tag, close)};
        else
            --depth;
    }
    return {};
}

ClosedTags tagsClosed(const TextSnapshot& text, std::span<const TextRange> carets, qsizetype most)
{
    ClosedTags result;
    TextSnapshot closed = text;
    TextOffset shift = 0;
    for (const TextRange caret : carets) {
        const TextOffset place = caret.location + shift;
        const ClosingTag tag = closingTagBefore(closed, place, most);
        if (tag.outcome == TagSearch::GaveUp)
            return {TagSearch::GaveUp, {}};
        if (tag.outcome == TagSearch::NothingOpen) {
            result.outcome = tag.outcome;
        } else {
            result.block.edits.push_back({caret, tag.text});
            closed = closed.replacing({place, 0}, tag.text);
            shift += tag.text.length();
        }
        result.block.ranges.push_back({caret.location + shift, 0});
    }
    return result;
}

} // namespace quillory
