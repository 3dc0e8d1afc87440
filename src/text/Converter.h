#pragma once

#include "text/EncodingTable.h"

#include <QByteArrayView>
#include <QStringView>
#include <memory>
#include <span>

struct UConverter;

namespace quillory {

/// ICU's converter for one encoding, made strict: what is malformed, unassigned or would come back
/// as another character stops it. It also undoes the permutation of control characters that some of
/// ICU's tables carry over from mainframes (0x1A to U+001C, 0x1C to U+007F, 0x7F to U+001A), and
/// the won sign that ISO-2022-KR's table has in the place of the backslash (RFC 1557 names ASCII).
class Converter
{
public:
    /// Null inside, and so never valid, when ICU has no converter of that name.
    explicit Converter(const EncodingInfo& info);

    /// What one step took and gave. Not valid: the bytes, or the character, that follow can not be
    /// converted.
    struct Progress
    {
        qsizetype read = 0;
        qsizetype written = 0;
        bool valid = true;
    };

    /// Decodes as much of \a bytes as there is room for.
    Progress decode(QByteArrayView bytes, std::span<char16_t> room);

    /// Ends decoding: what was held back. Not valid when the bytes ended inside a character.
    Progress finishDecoding(std::span<char16_t> room);

    /// Encodes as much of \a units as there is room for. Where it is not valid, \a read may be
    /// negative: the character began in the piece before.
    /// \a isLast: nothing comes after them.
    Progress encode(QStringView units, std::span<char> room, bool isLast);

    /// False between the bytes, or the units, of one character.
    bool isAtRest() const;

    void reset();

private:
    enum class Permutation
    {
        none,
        controls,
        controlsAndWon
    };

    struct Close
    {
        void operator()(UConverter* converter) const;
    };

    Progress decodeAsIs(QByteArrayView bytes, std::span<char16_t> room, bool isLast);
    Progress encodeAsIs(QStringView units, std::span<char> room, bool isLast);
    bool comesBack(QStringView character);
    qsizetype lengthThatComesBack(QStringView units);
    char16_t toText(char16_t unit) const;
    char16_t toTable(char16_t unit) const;

    const EncodingInfo& m_info; ///< of the table, which is always there
    std::unique_ptr<UConverter, Close> m_converter;
    std::unique_ptr<Converter> m_probe; ///< tries single characters; made when there is one to try
    Permutation m_permutation = Permutation::none;
};

} // namespace quillory
