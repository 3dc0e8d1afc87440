#include "text/LanguageLetters.h"

#include <algorithm>
#include <cmath>
#include <unicode/uscript.h>

namespace quillory {

namespace {

using enum ScriptGroup;

struct Row
{
    const char* language; ///< BCP 47
    ScriptGroup script;
    double share;        ///< of the letters listed, among all of a text; 0 to 1
    QStringView letters; ///< beyond ASCII, in lower case, the commonest first
};

/// In the logarithm: a letter that no text of the language has.
constexpr float foreignLetter = -10.4F;

constexpr Row table[] = {
    // clang-format off
    {"en", latin, 0.0006, u"éèïçêöñü"},
    {"de", latin, 0.022, u"üäößé"},
    {"fr", latin, 0.04, u"éèàêçùâîôûœëïüæÿ"},
    {"es", latin, 0.035, u"óíáéñúüºª"},
    {"pt", latin, 0.045, u"ãçáéíóêõúâàôºª"},
    {"it", latin, 0.012, u"èàùòìéº"},
    {"ca", latin, 0.03, u"àéèíòçóúïü·"},
    {"nl", latin, 0.003, u"ëéïèöüó"},
    {"sv", latin, 0.06, u"äåöé"},
    {"da", latin, 0.035, u"åøæé"},
    {"fi", latin, 0.05, u"äöåšž"},
    {"is", latin, 0.11, u"íáðóæéúþöý"},
    {"ga", latin, 0.06, u"áíéóú"},
    {"sq", latin, 0.06, u"ëç"},
    {"cs", latin, 0.15, u"íáěéřýžčšůúťďňó"},
    {"sk", latin, 0.13, u"áíéčšžýúľťôóďäňĺŕ"},
    {"pl", latin, 0.08, u"łęążóśćńź"},
    {"hu", latin, 0.11, u"áéöóőíüúű"},
    {"ro", latin, 0.07, u"ăîșțâşţ"},
    {"hr", latin, 0.035, u"čšžćđ"},
    {"et", latin, 0.06, u"äüõöšž"},
    {"lv", latin, 0.13, u"āīēšūžļņčģķ"},
    {"lt", latin, 0.09, u"ėšųįžčąūę"},
    {"tr", latin, 0.13, u"ıüşğçöİâîû"},
    {"eo", latin, 0.03, u"ŭĝĉŝĵĥ"},
    {"mt", latin, 0.06, u"ħżġċà"},
    {"vi", latin, 0.3, u"\u0301\u0300đ\u0323ưôơê\u0309âáàă\u0303óíãờếạốộấảúậớòìầ"
                       u"ợểệềéịèủùựọừữồứẻụổởỏẫăắằặẹẽễỉĩõỗỡũửỳýỷỹỵẵẳẩẫ"},
    {"ru", cyrillic, 0.9, u"оеаинтсрвлкмдпуяыьгзбчйхжшюцщэфъё"},
    {"uk", cyrillic, 0.9, u"оаинівтерслкудмпзяьбгчйхжцюшїєщфґ"},
    {"be", cyrillic, 0.9, u"анаіеорстлвкядзпуымцўьбгчйшюхжэёф"},
    {"bg", cyrillic, 0.9, u"аоиетнрсвлкдпмзгуячбъжйщцхшюфь"},
    {"sr", cyrillic, 0.9, u"аоиенрстјвкдмулпзбгцчшњжљхћђџф"},
    {"mk", cyrillic, 0.9, u"аоиетнрсвлкдпмјзугбчшцжѓќњљџхфѕ"},
    {"el", greek, 0.9, u"αοιετσνηυρπκμλςίάόέήδγωχθύφώβξζψϊϋΐΰ"},
    {"he", hebrew, 0.9, u"יוהלאמרתבשנםדעקפחטזגסןכצךץף"
                        u"\u05BC\u05B8\u05B7\u05B4\u05B0\u05B6\u05B5\u05B9\u05C1\u05BB"},
    {"ar", arabic, 0.9, u"اليمنوترةبدعسفهكقحجشطصخىأءإذثزضغئؤظآ"
                        u"\u060C\u061F\u061B\u064E\u0650\u064F\u0652\u0651\u064B\u064D\u064C"},
    {"fa", arabic, 0.9, u"ایرنمدهتوشبسکزخفگقجلحعپآصطچضئغثذظأژ،؟؛"},
    {"ur", arabic, 0.9, u"ایکرےہنومتسلپبھجدگشںٹعچقفحزخڑصئضظغثطڈذآؤژ،؟"},
    {"th", thai, 0.95, u"านร่อก้เงมยลวดทสีิตัะปบคหแจพ็ชืุขใไ์โูำึถผธณซศภๆญษฐฟฝฎฏฮฆฉฬ๊๋ฯฑฒฌฤ"},
    // clang-format on
};

} // namespace

ScriptGroup scriptGroupOf(char32_t character)
{
    const auto isIn = [character](char32_t first, char32_t last) {
        return character >= first && character <= last;
    };
    // Marks and signs that Unicode lets several scripts share, but that one of them is known by.
    if (isIn(0x0300, 0x036F))
        return latin;
    if (isIn(0x0590, 0x05FF))
        return hebrew;
    if (isIn(0x0600, 0x06FF))
        return arabic;
    if (isIn(0x3000, 0x30FF) || isIn(0xFF00, 0xFFEF))
        return eastAsian;
    UErrorCode status = U_ZERO_ERROR;
    switch (uscript_getScript(UChar32(character), &status)) {
    case USCRIPT_LATIN:
        return latin;
    case USCRIPT_CYRILLIC:
        return cyrillic;
    case USCRIPT_GREEK:
        return greek;
    case USCRIPT_HEBREW:
        return hebrew;
    case USCRIPT_ARABIC:
        return arabic;
    case USCRIPT_THAI:
        return thai;
    case USCRIPT_HAN:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_HANGUL:
    case USCRIPT_BOPOMOFO:
        return eastAsian;
    case USCRIPT_COMMON:
    case USCRIPT_INHERITED:
    case USCRIPT_UNKNOWN:
        return none;
    default:
        return other;
    }
}

const std::vector<LanguageLetters>& LanguageLetters::all()
{
    static const std::vector<LanguageLetters> languages = [] {
        std::vector<LanguageLetters> made;
        for (const Row& row : table)
            made.push_back(LanguageLetters(row.script, row.share, row.letters));
        return made;
    }();
    return languages;
}

LanguageLetters::LanguageLetters(ScriptGroup script, double share, QStringView letters)
    : m_script(script), m_ascii(float(std::log(1 - share)))
{
    const auto count = double(letters.size());
    // The rule of Gusein-Zade for letters by rank.
    for (qsizetype i = 0; i < letters.size(); ++i)
        m_letters.emplace_back(
            letters[i].unicode(),
            float(std::log(share * std::log((count + 1) / double(i + 1)) / count)));
    std::sort(m_letters.begin(), m_letters.end());
}

float LanguageLetters::logShare(char32_t letter) const
{
    const auto found = std::lower_bound(m_letters.begin(), m_letters.end(), letter,
                                        [](const auto& a, char32_t b) { return a.first < b; });
    return found != m_letters.end() && found->first == letter ? found->second : foreignLetter;
}

} // namespace quillory
