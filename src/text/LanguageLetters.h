#pragma once

#include <QStringView>
#include <vector>

namespace quillory {

/// Scripts that one tells apart to guess an encoding. Chinese characters, kana and Hangul are one.
enum class ScriptGroup : quint8
{
    none, ///< no letter
    latin,
    cyrillic,
    greek,
    hebrew,
    arabic,
    thai,
    eastAsian,
    other
};

/// The script of a letter or mark; none where it is neither, or a mark of no script.
ScriptGroup scriptGroupOf(char32_t character);

/// How often the letters of a language are met in its texts, for languages whose letters are few
/// enough to be listed: all but the East Asian ones. From what is commonly known of alphabets, in
/// round figures; which encoding a text is in takes no more.
class LanguageLetters
{
public:
    /// Made at the first call and kept.
    static const std::vector<LanguageLetters>& all();

    ScriptGroup script() const { return m_script; }
    /// The natural logarithm of the share of \a letter, beyond ASCII and in lower case, among all
    /// letters of a text.
    float logShare(char32_t letter) const;
    /// The same of all ASCII letters taken together, where the script is Latin.
    float logShareOfAscii() const { return m_ascii; }

private:
    LanguageLetters(ScriptGroup script, double share, QStringView letters);

    ScriptGroup m_script;
    float m_ascii;
    std::vector<std::pair<char16_t, float>> m_letters; ///< by letter
};

} // namespace quillory
