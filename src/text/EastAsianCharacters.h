#pragma once

#include "text/StringEncoding.h"

#include <array>
#include <bitset>
#include <vector>

namespace quillory {

/// How often the characters of one East Asian language are met: a few hundred by rank, thousands by
/// the level at which the national character set has them, which goes by use.
class EastAsianCharacters
{
public:
    enum Language
    {
        SimplifiedChinese,
        TraditionalChinese,
        Japanese,
        Korean
    };
    static constexpr std::array languages{SimplifiedChinese, TraditionalChinese, Japanese, Korean};

    /// Made at the first call and kept.
    static const EastAsianCharacters& of(Language language);

    /// The natural logarithm of the share of \a character, a letter or a sign of East Asian
    /// writing, among all of a text.
    float logShare(char32_t character) const;

private:
    static constexpr size_t plane = 0x10000;

    explicit EastAsianCharacters(Language language);

    std::vector<std::pair<char16_t, float>> m_common; ///< by character
    std::bitset<plane> m_firstLevel;
    std::bitset<plane> m_secondLevel;
    float m_first = 0;
    float m_second = 0;
    float m_katakana = 0;
};

} // namespace quillory
