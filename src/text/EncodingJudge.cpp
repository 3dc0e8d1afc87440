#include "text/EncodingJudge.h"

#include "text/ByteLayout.h"
#include "text/EastAsianCharacters.h"

#include <algorithm>
#include <array>
#include <unicode/uchar.h>

namespace quillory {

namespace {

// Natural logarithms. They are set by hand, and measured by the tests: what decides is that they
// are far enough apart.

constexpr double letterOfOtherScript = -11.5;
constexpr double anotherScript = -3; ///< for each script beside Latin
constexpr double capitalAfterSmall = -5;
constexpr double capitalAfterCapital = -1;
constexpr double capitalAtStart = -2;
constexpr double smallAfterCapitals = -2;
constexpr double smallAtStart = -0.15;
constexpr double scriptsInOneWord = -7;
constexpr double latinBesideEastAsian = -1.5;
constexpr double accentAfterAccent = -1;
constexpr double symbolBesideLetter = -2;
constexpr double signInsideWord = -5;
constexpr double boxAfterBox = 6;
constexpr double boxBesideLetter = -5;
/// In an encoding that is known by its byte-order mark.
constexpr double missingMark = -4;

constexpr QStringView typographicSigns =
    u"“”‘’„‚–—…«»‹›•·°§©®™€£¿¡†‡‰×±²³½\u00A0\u00AD\u200C\u200D\u200E\u200F";
/// Those of them that words have inside, or between two of them.
constexpr QStringView wordSigns = u"’·–—…\u00A0\u00AD\u200C\u200D";

bool isMarked(StringEncoding encoding)
{
    return encoding == StringEncoding::utf16 || encoding == StringEncoding::utf32;
}

/// A letter beyond ASCII, in lower case, and how many there are.
struct LetterCount
{
    char32_t letter;
    qsizetype count;
};

double sumOf(const std::vector<LetterCount>& counts, const auto& logShare)
{
    double sum = 0;
    for (const LetterCount& each : counts)
        sum += double(each.count) * logShare(each.letter);
    return sum;
}

/// How likely the letters of one script are, in the language of it that fits best.
double bestLikelihood(ScriptGroup script, const std::vector<LetterCount>& counts,
                      qsizetype asciiLetters)
{
    std::optional<double> best;
    const auto consider = [&](double likelihood) {
        best = std::max(best.value_or(likelihood), likelihood);
    };
    if (script == ScriptGroup::eastAsian) {
        for (const auto language : EastAsianCharacters::languages) {
            const EastAsianCharacters& characters = EastAsianCharacters::of(language);
            consider(sumOf(counts, [&](char32_t each) { return characters.logShare(each); }));
        }
    }
    for (const LanguageLetters& language : LanguageLetters::all()) {
        if (language.script() != script)
            continue;
        const double ascii =
            script == ScriptGroup::latin ? double(asciiLetters) * language.logShareOfAscii() : 0;
        consider(ascii + sumOf(counts, [&](char32_t each) { return language.logShare(each); }));
    }
    return best ? *best : sumOf(counts, [](char32_t) { return letterOfOtherScript; });
}

} // namespace

double EncodingJudge::logOf(Kind kind)
{
    switch (kind) {
    case Kind::letter:
        return 0; // see letterLikelihood()
    case Kind::asciiLetter:
        return -3.5;
    case Kind::blank:
        return -1.9;
    case Kind::lineBreak:
        return -3.9;
    case Kind::digit:
        return -4.6;
    case Kind::asciiSign:
        return -5.1;
    case Kind::typographic:
        return -6.9;
    case Kind::symbol:
        return -10.4;
    case Kind::box:
    case Kind::escape:
        return -9;
    case Kind::control:
        return -16;
    case Kind::noCharacter:
    case Kind::error:
        return -20;
    }
    return 0;
}

EncodingJudge::EncodingJudge(const EncodingInfo& info) : m_info(info), m_decoder(info)
{
    if (info.form == EncodingForm::utf16)
        m_unitBytes = 2;
    if (info.form == EncodingForm::utf32)
        m_unitBytes = 4;
    if (const ByteTable* table = m_decoder.table()) {
        m_byteCounts.resize(256);
        for (int byte = 0; byte < 256; ++byte) {
            const char16_t unit = table->unitFor(uchar(byte));
            m_byByte.push_back(unit == ByteTable::undefined ? Traits() : traitsOf(unit));
        }
    }
}

void EncodingJudge::take(QByteArrayView bytes)
{
    m_hasMark |= m_isFirst && layoutOf(bytes, m_info.encoding).hasMark;
    m_isFirst = m_isFirst && bytes.isEmpty();
    if (!m_byByte.empty()) {
        for (const char byte : bytes) {
            const Traits& traits = m_byByte[uchar(byte)];
            m_byteCounts[uchar(byte)] += traits.kind == Kind::letter;
            note(traits);
        }
        return;
    }
    std::array<char16_t, 1024> room;
    for (bool isFull = false; !bytes.isEmpty() || isFull;) {
        const auto progress = m_decoder.decode(bytes, room);
        for (qsizetype i = 0; i < progress.written; ++i)
            takeUnit(room[size_t(i)]);
        if (!progress.valid)
            note({});
        isFull = progress.valid && progress.written == qsizetype(room.size());
        bytes = bytes.sliced(progress.read);
    }
}

void EncodingJudge::takeUnit(char16_t unit)
{
    if (QChar::isHighSurrogate(unit)) {
        m_high = unit;
        return;
    }
    const char32_t character =
        QChar::isLowSurrogate(unit) ? QChar::surrogateToUcs4(m_high, unit) : unit;
    const Traits traits = traitsOf(character);
    if (traits.kind == Kind::letter)
        ++m_letters[traits.lower];
    note(traits);
}

void EncodingJudge::note(const Traits& next)
{
    m_errors += next.kind == Kind::error;
    m_asciiLetters += next.kind == Kind::asciiLetter;
    m_likelihood += (next.kind == Kind::error ? m_unitBytes : 1) * logOf(next.kind) +
                    context(m_beforeLast, m_last, next);
    m_beforeLast = m_last;
    m_last = next;
}

void EncodingJudge::clear()
{
    m_decoder.reset();
    m_letters.clear();
    std::fill(m_byteCounts.begin(), m_byteCounts.end(), 0);
    m_last = m_beforeLast = Traits();
    m_errors = 0;
    m_asciiLetters = 0;
    m_hasMark = false;
    m_isFirst = true;
    m_likelihood = 0;
}

EncodingJudge::Traits EncodingJudge::traitsOf(char32_t character)
{
    Traits traits;
    traits.lower = character;
    const auto is = [&](Kind kind) {
        traits.kind = kind;
        return traits;
    };
    if (character == U' ')
        return is(Kind::blank);
    if (character >= U'\t' && character <= U'\r')
        return is(Kind::lineBreak);
    if (character == 0x1B)
        return is(Kind::escape);
    if (character >= U'0' && character <= U'9')
        return is(Kind::digit);
    const auto code = UChar32(character);
    if (u_iscntrl(code) && u_charType(code) == U_CONTROL_CHAR)
        return is(Kind::control);
    traits.isUpper = u_isupper(code) || u_istitle(code);
    traits.isLower = u_islower(code);
    // The small letter of the Turkish dotted I is ASCII.
    traits.lower = character == 0x0130 ? character : char32_t(u_tolower(code));
    if (character < 0x80) {
        if (!u_isalpha(code))
            return is(Kind::asciiSign);
        traits.script = ScriptGroup::latin;
        return is(Kind::asciiLetter);
    }
    if (character < 0x10000 && typographicSigns.contains(QChar(char16_t(character))))
        return is(Kind::typographic);
    if (character >= 0x2500 && character <= 0x259F)
        return is(Kind::box);
    const int8_t category = u_charType(code);
    if (category == U_UNASSIGNED || category == U_PRIVATE_USE_CHAR || category == U_SURROGATE ||
        character == 0xFEFF)
        return is(Kind::noCharacter);
    traits.script = scriptGroupOf(character);
    return is(traits.script == ScriptGroup::none ? Kind::symbol : Kind::letter);
}

/// What \a next costs for standing where it does.
double EncodingJudge::context(const Traits& beforeLast, const Traits& last, const Traits& next)
{
    const auto isLetter = [](const Traits& each) { return each.script != ScriptGroup::none; };
    double sum = 0;
    if (next.isUpper)
        sum += last.isLower   ? capitalAfterSmall
               : last.isUpper ? capitalAfterCapital
                              : capitalAtStart;
    else if (next.isLower)
        sum += !isLetter(last)                      ? smallAtStart
               : last.isUpper && beforeLast.isUpper ? smallAfterCapitals
                                                    : 0;
    if (isLetter(next) && isLetter(last) && next.script != last.script) {
        const bool isEastAsian =
            next.script == ScriptGroup::eastAsian || last.script == ScriptGroup::eastAsian;
        sum += isEastAsian ? latinBesideEastAsian : scriptsInOneWord;
    }
    if (next.kind == Kind::letter && last.kind == Kind::letter &&
        next.script == ScriptGroup::latin && last.script == ScriptGroup::latin)
        sum += accentAfterAccent;
    if ((next.kind == Kind::symbol && isLetter(last)) ||
        (last.kind == Kind::symbol && isLetter(next)))
        sum += symbolBesideLetter;
    if (last.kind == Kind::typographic && isLetter(next) && isLetter(beforeLast) &&
        !wordSigns.contains(QChar(char16_t(last.lower))))
        sum += signInsideWord;
    if (next.kind == Kind::box && last.kind == Kind::box)
        sum += boxAfterBox;
    if ((next.kind == Kind::box && isLetter(last)) || (last.kind == Kind::box && isLetter(next)))
        sum += boxBesideLetter;
    return sum;
}

double EncodingJudge::letterLikelihood() const
{
    std::array<std::vector<LetterCount>, size_t(ScriptGroup::other) + 1> byScript;
    for (const auto& [letter, count] : m_letters)
        byScript[size_t(scriptGroupOf(letter))].push_back({letter, count});
    for (size_t byte = 0; byte < m_byteCounts.size(); ++byte) {
        const Traits& traits = m_byByte[byte];
        if (m_byteCounts[byte] > 0)
            byScript[size_t(traits.script)].push_back({traits.lower, m_byteCounts[byte]});
    }
    double sum = 0;
    for (size_t i = 0; i < byScript.size(); ++i) {
        const auto script = ScriptGroup(i);
        if (script == ScriptGroup::latin)
            sum += bestLikelihood(script, byScript[i], m_asciiLetters);
        else if (!byScript[i].empty())
            sum += anotherScript + bestLikelihood(script, byScript[i], 0);
    }
    return sum;
}

double EncodingJudge::plausibility() const
{
    const double mark = isMarked(m_info.encoding) && !m_hasMark ? missingMark : 0;
    return m_likelihood + letterLikelihood() + mark;
}

} // namespace quillory
