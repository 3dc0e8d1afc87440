#pragma once

#include "text/LanguageLetters.h"
#include "text/StreamDecoder.h"

#include <unordered_map>
#include <vector>

namespace quillory {

/// Says how plausible bytes are as text in one encoding: how likely they would come about, were
/// they written in the language that fits best. Each character counts by how often it is met, and a
/// little by what stands before it, each byte that is no text by that it should not be there. So
/// encodings of one byte and of several bytes a character can be compared.
class EncodingJudge
{
public:
    /// For an encoding that StreamDecoder can decode.
    explicit EncodingJudge(const EncodingInfo& info);

    /// Adds \a bytes, the next of a text, to what is judged.
    void take(QByteArrayView bytes);
    /// Forgets what was taken.
    void clear();

    StringEncoding encoding() const { return m_info.encoding; }
    /// How many places were no text.
    qsizetype errors() const { return m_errors; }
    /// The natural logarithm of a likelihood, to be compared with that of the same bytes in other
    /// encodings.
    double plausibility() const;

private:
    enum class Kind : quint8
    {
        letter, ///< or mark; beyond ASCII
        asciiLetter,
        blank,
        lineBreak,
        digit,
        asciiSign,
        typographic, ///< signs that good typesetting has
        symbol,      ///< any other sign
        box,         ///< frames of text terminals
        escape,
        control,
        noCharacter,
        error
    };

    struct Traits
    {
        char32_t lower = 0;
        Kind kind = Kind::error;
        ScriptGroup script = ScriptGroup::none;
        bool isUpper = false;
        bool isLower = false;
    };

    static double logOf(Kind kind);
    static Traits traitsOf(char32_t character);
    static double context(const Traits& beforeLast, const Traits& last, const Traits& next);
    void takeUnit(char16_t unit);
    void note(const Traits& next);
    double letterLikelihood() const;

    const EncodingInfo& m_info;
    StreamDecoder m_decoder;
    std::vector<Traits> m_byByte;                      ///< for an encoding of one byte a character
    std::unordered_map<char32_t, qsizetype> m_letters; ///< beyond ASCII, in lower case: how many
    std::vector<qsizetype> m_byteCounts; ///< the same, of an encoding of one byte a character
    int m_unitBytes = 1;                 ///< that an error spoils
    Traits m_last;
    Traits m_beforeLast;
    char16_t m_high = 0; ///< the first half of a surrogate pair
    qsizetype m_errors = 0;
    qsizetype m_asciiLetters = 0;
    bool m_hasMark = false;
    bool m_isFirst = true;
    double m_likelihood = 0; ///< of all but the letters beyond ASCII
};

} // namespace quillory
