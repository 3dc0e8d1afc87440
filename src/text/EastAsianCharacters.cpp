#include "text/EastAsianCharacters.h"

#include "text/Converter.h"

#include <QStringView>
#include <algorithm>
#include <cmath>

namespace quillory {

namespace {

// The commonest first, as counts of large bodies of text commonly have them.

constexpr QStringView simplified = u"的一是不了在人有我他这个们中来上大为和国地到以说时要就出会可也"
                                   u"你对生能而子那得于着下自之年过发后作里用道行所然家种事"
                                   u"成方多经么去法学如都同现当没动面起看定天分还进好小部其些主样理"
                                   u"心她本前开但因只从想实日军者意无力它与长把机十民第公此"
                                   u"已工使情明性知全三又关点正业外将两高间由问很最重并物手应战向头"
                                   u"文体政美相见被利什二等产或新己制身果加西斯月话合回特代"
                                   u"内信表化老给世位次度门任常先海通教儿原东声提立及比员解水名真论"
                                   u"处走义各入几口认条平系气题活更别打女变四神总何电数安少"
                                   u"报才结反受目太量再感建务做接必场件计管期市直德资命山金指克许统"
                                   u"区保至队形社便空决治展马科司五基眼书非则听白却界达光放"
                                   u"强即像难且权思王象完设式色路记南品住告类求据程北边死张该交规万"
                                   u"取拉格望觉术领共确传师观清今切院让识候带导争运";

constexpr QStringView traditional = u"的一是不了在人有我他這個們中來上大為和國地到以說時要就出會可"
                                    u"也你對生能而子那得於著下自之年過發後作裡用道行所然家種事"
                                    u"成方多經麼去法學如都同現當沒動面起看定天分還進好小部其些主樣"
                                    u"理心她本前開但因只從想實日軍者意無力它與長把機十民第公此"
                                    u"已工使情明性知全三又關點正業外將兩高間由問很最重並物手應戰向"
                                    u"頭文體政美相見被利什二等產或新己制身果加西斯月話合回特代"
                                    u"內信表化老給世位次度門任常先海通教兒原東聲提立及比員解水名真"
                                    u"論處走義各入幾口認條平系氣題活更別打女變四神總何電數安少"
                                    u"報才結反受目太量再感建務做接必場件計管期市直德資命山金指克許"
                                    u"統區保至隊形社便空決治展馬科司五基眼書非則聽白卻界達光放"
                                    u"強即像難且權思王象完設式色路記南品住告類求據程北邊死張該交規"
                                    u"萬取拉格望覺術領共確傳師觀清今切院讓識候帶導爭運";

constexpr QStringView japanese = u"のいをたにはてとしがるでなっれらもかすりこだまさきめくあけどろえ"
                                 u"みよばつそわちせおほへうじやんずげぶべごびざぎょゅゃ"
                                 u"日一国人年大十二本中長出三時行見月分後前生五間上東四今金九入学高"
                                 u"円子外八六下来気小七山話女北午百書先名川千水半男西電校"
                                 u"語土木聞食車何南万毎白天母火右読友左休父雨会同事自社発者地業方新"
                                 u"場員立開手力問代明動京目通言理体田主題意不作用度強公持"
                                 u"野以思家世多正安院心界教文元重近考画海売知道集別物使品計死特私始"
                                 u"朝運終台広住真有口少町料工建空急止送切転研足究楽起着店";

constexpr QStringView korean =
    u"이다는에의가고을하지은로도한사리기를서인나자어시아대그라정있전해스부으일것수보여들과만적었제"
    u"원주상게선구동장내면공조연비"
    u"성회소국세발모무경중없방우신말미치위안러진실오관계용문생물결당화유체법야남분요운교민강임권산"
    u"려바개심식출건른합반때두단등급"
    u"차업종각표현트입재명후저절행작력질드감음살며간타히속터태형금큰달양됩니습했할";

constexpr QStringView signs = u"，。、：；？！（）《》「」『』【】・ー〜\u3000";

struct Level
{
    quint16 first; ///< of a two-byte encoding
    quint16 last;
};

struct Source
{
    QStringView ranked;
    double rankedShare;
    const char* converter;
    Level firstLevel;
    Level secondLevel;
    double firstShare; ///< of all characters
    double secondShare;
    double katakanaShare;
};

const Source& sourceOf(EastAsianCharacters::Language language)
{
    static constexpr Source sources[] = {
        {simplified, 0.5, "GB2312", {0xB0A1, 0xD7F9}, {0xD8A1, 0xF7FE}, 0.4, 0.01, 1e-4},
        {traditional, 0.5, "Big5", {0xA440, 0xC67E}, {0xC940, 0xF9D5}, 0.4, 0.01, 1e-4},
        {japanese, 0.7, "EUC-JP", {0xB0A1, 0xCFD3}, {0xD0A1, 0xF4A6}, 0.15, 0.005, 0.1},
        {korean, 0.7, "EUC-KR", {0xB0A1, 0xC8FE}, {0xCAA1, 0xFDFE}, 0.25, 0.01, 1e-4},
    };
    return sources[language];
}

constexpr float rare = -14;         ///< in no level of the language's set
constexpr double signShare = 0.004; ///< of each sign

/// The characters that the codes of \a level stand for.
void fill(std::bitset<0x10000>& characters, const char* converter, const Level& level)
{
    const EncodingInfo info{StringEncoding::none, 0, EncodingForm::multiByte, "", converter, ""};
    Converter decoder(info);
    std::array<char16_t, 4> units{};
    for (quint32 code = level.first; code <= level.last; ++code) {
        if ((code & 0xFF) < 0x40)
            continue;
        const std::array bytes{char(code >> 8), char(code & 0xFF)};
        decoder.reset();
        const auto progress = decoder.decode(QByteArrayView(bytes.data(), 2), units);
        if (progress.valid && progress.written == 1)
            characters.set(units[0]);
    }
}

float logOf(double share, size_t count)
{
    return count > 0 ? float(std::log(share / double(count))) : rare;
}

} // namespace

const EastAsianCharacters& EastAsianCharacters::of(Language language)
{
    static const std::array all{EastAsianCharacters(SimplifiedChinese),
                                EastAsianCharacters(TraditionalChinese),
                                EastAsianCharacters(Japanese), EastAsianCharacters(Korean)};
    return all[language];
}

EastAsianCharacters::EastAsianCharacters(Language language)
{
    const Source& source = sourceOf(language);
    fill(m_firstLevel, source.converter, source.firstLevel);
    fill(m_secondLevel, source.converter, source.secondLevel);
    m_first = logOf(source.firstShare, m_firstLevel.count());
    m_second = logOf(source.secondShare, m_secondLevel.count());
    m_katakana = logOf(source.katakanaShare, 86);
    for (const QChar sign : signs)
        m_common.emplace_back(sign.unicode(), float(std::log(signShare)));
    const auto count = double(source.ranked.size());
    for (qsizetype i = 0; i < source.ranked.size(); ++i) {
        // The rule of Gusein-Zade for letters by rank.
        const double share = source.rankedShare * std::log((count + 1) / double(i + 1)) / count;
        m_common.emplace_back(source.ranked[i].unicode(),
                              std::max(m_first, float(std::log(share))));
    }
    const auto byCharacter = [](const auto& a, const auto& b) { return a.first < b.first; };
    std::stable_sort(m_common.begin(), m_common.end(), byCharacter);
}

float EastAsianCharacters::logShare(char32_t character) const
{
    if (character >= plane)
        return rare;
    const auto common = std::lower_bound(m_common.begin(), m_common.end(), character,
                                         [](const auto& a, char32_t b) { return a.first < b; });
    if (common != m_common.end() && common->first == character)
        return common->second;
    if (character >= 0x30A1 && character <= 0x30F6)
        return m_katakana;
    return m_firstLevel[character] ? m_first : m_secondLevel[character] ? m_second : rare;
}

} // namespace quillory
