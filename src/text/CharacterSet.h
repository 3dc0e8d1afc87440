#pragma once

#include <QStringView>
#include <array>
#include <memory>

struct USet;

namespace quillory {

/// An immutable set of Unicode code points, surrogates included. Copies share their contents and
/// may go to any thread.
class CharacterSet
{
public:
    /// The empty set.
    CharacterSet() : CharacterSet(QStringView()) {}

    /// The characters in \a characters.
    explicit CharacterSet(QStringView characters);

    // The named sets follow the general categories of the Unicode version that ICU holds.
    static const CharacterSet& whitespace(); ///< Zs, tab and U+200B
    static const CharacterSet& newline();    ///< U+000A to U+000D, U+0085, U+2028, U+2029
    static const CharacterSet& whitespaceAndNewline();
    static const CharacterSet& letter();       ///< L*, M*
    static const CharacterSet& alphanumeric(); ///< L*, M*, N*
    static const CharacterSet& decimalDigit(); ///< Nd
    static const CharacterSet& symbol();       ///< S*
    static const CharacterSet& punctuation();  ///< P*
    static const CharacterSet& illegal();      ///< Cn: unassigned, and noncharacters

    /// What "\\w" matches in a regular expression of ICU (UTS 18, annex C).
    static const CharacterSet& regularExpressionWord();

    /// False for what is no code point.
    bool contains(char32_t character) const
    {
        if (character >= 0x10000)
            return containsSupplementary(character);
        return (m_contents->basicPlane[character / 64] >> character % 64 & 1) != 0;
    }

    CharacterSet united(const CharacterSet& other) const;
    CharacterSet inverted() const;
    CharacterSet withCharacters(QStringView characters) const;
    CharacterSet withoutCharacters(QStringView characters) const;

    bool operator==(const CharacterSet& other) const;

private:
    struct CloseSet
    {
        void operator()(USet* set) const;
    };
    using SetPointer = std::unique_ptr<USet, CloseSet>;

    /// ICU's set, frozen, and a bitmap of its part in the basic plane: one character after the
    /// other is asked for, nearly always from there.
    struct Contents
    {
        SetPointer set;
        std::array<quint64, 1024> basicPlane{};
    };

    explicit CharacterSet(SetPointer set);
    static CharacterSet ofPattern(QStringView pattern);
    SetPointer thawed() const;
    bool containsSupplementary(char32_t character) const;

    std::shared_ptr<const Contents> m_contents;
};

} // namespace quillory
