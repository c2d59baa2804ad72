#include "platform/modules/LocaleLanguages.h"

#include <kelcore/platform/languages.h>

#include <algorithm>
#include <string>

namespace kel::platform {
namespace {

struct Row {
    std::string_view locale;
    LANGID language;
};

// "Language Identifier Constants" of the Windows documentation, by the names of ISO 639 and ISO 3166. A row without a
// country holds for all countries that have none of their own.
constexpr Row kRows[] = {
    {"af", 0x0436},          {"am", 0x045E},          {"ar", 0x0401},    {"ar_AE", 0x3801},       {"ar_BH", 0x3C01},
    {"ar_DZ", 0x1401},       {"ar_EG", 0x0C01},       {"ar_IQ", 0x0801}, {"ar_JO", 0x2C01},       {"ar_KW", 0x3401},
    {"ar_LB", 0x3001},       {"ar_LY", 0x1001},       {"ar_MA", 0x1801}, {"ar_OM", 0x2001},       {"ar_QA", 0x4001},
    {"ar_SY", 0x2801},       {"ar_TN", 0x1C01},       {"ar_YE", 0x2401}, {"as", 0x044D},          {"az", 0x042C},
    {"be", 0x0423},          {"bg", 0x0402},          {"bn", 0x0445},    {"bn_BD", 0x0845},       {"br", 0x047E},
    {"bs", 0x141A},          {"ca", 0x0403},          {"cs", 0x0405},    {"cy", 0x0452},          {"da", 0x0406},
    {"de", 0x0407},          {"de_AT", 0x0C07},       {"de_CH", 0x0807}, {"de_LI", 0x1407},       {"de_LU", 0x1007},
    {"el", 0x0408},          {"en", 0x0409},          {"en_AU", 0x0C09}, {"en_CA", 0x1009},       {"en_GB", 0x0809},
    {"en_IE", 0x1809},       {"en_IN", 0x4009},       {"en_NZ", 0x1409}, {"en_PH", 0x3409},       {"en_SG", 0x4809},
    {"en_ZA", 0x1C09},       {"en_ZW", 0x3009},       {"es", 0x0C0A},    {"es_AR", 0x2C0A},       {"es_BO", 0x400A},
    {"es_CL", 0x340A},       {"es_CO", 0x240A},       {"es_CR", 0x140A}, {"es_DO", 0x1C0A},       {"es_EC", 0x300A},
    {"es_GT", 0x100A},       {"es_HN", 0x480A},       {"es_MX", 0x080A}, {"es_NI", 0x4C0A},       {"es_PA", 0x180A},
    {"es_PE", 0x280A},       {"es_PR", 0x500A},       {"es_PY", 0x3C0A}, {"es_SV", 0x440A},       {"es_US", 0x540A},
    {"es_UY", 0x380A},       {"es_VE", 0x200A},       {"et", 0x0425},    {"eu", 0x042D},          {"fa", 0x0429},
    {"fi", 0x040B},          {"fil", 0x0464},         {"fo", 0x0438},    {"fr", 0x040C},          {"fr_BE", 0x080C},
    {"fr_CA", 0x0C0C},       {"fr_CH", 0x100C},       {"fr_LU", 0x140C}, {"fr_MC", 0x180C},       {"fy", 0x0462},
    {"ga", 0x083C},          {"gd", 0x0491},          {"gl", 0x0456},    {"gu", 0x0447},          {"ha", 0x0468},
    {"he", 0x040D},          {"hi", 0x0439},          {"hr", 0x041A},    {"hr_BA", 0x101A},       {"hu", 0x040E},
    {"hy", 0x042B},          {"id", 0x0421},          {"ig", 0x0470},    {"is", 0x040F},          {"it", 0x0410},
    {"it_CH", 0x0810},       {"ja", 0x0411},          {"ka", 0x0437},    {"kk", 0x043F},          {"kl", 0x046F},
    {"km", 0x0453},          {"kn", 0x044B},          {"ko", 0x0412},    {"ky", 0x0440},          {"lb", 0x046E},
    {"lo", 0x0454},          {"lt", 0x0427},          {"lv", 0x0426},    {"mi", 0x0481},          {"mk", 0x042F},
    {"ml", 0x044C},          {"mn", 0x0450},          {"mr", 0x044E},    {"ms", 0x043E},          {"ms_BN", 0x083E},
    {"mt", 0x043A},          {"my", 0x0455},          {"nb", 0x0414},    {"ne", 0x0461},          {"nl", 0x0413},
    {"nl_BE", 0x0813},       {"nn", 0x0814},          {"no", 0x0414},    {"oc", 0x0482},          {"or", 0x0448},
    {"pa", 0x0446},          {"pl", 0x0415},          {"ps", 0x0463},    {"pt", 0x0416},          {"pt_PT", 0x0816},
    {"ro", 0x0418},          {"ro_MD", 0x0818},       {"ru", 0x0419},    {"ru_MD", 0x0819},       {"rw", 0x0487},
    {"sd", 0x0859},          {"si", 0x045B},          {"sk", 0x041B},    {"sl", 0x0424},          {"sq", 0x041C},
    {"sr", 0x281A},          {"sr@latin", 0x241A},    {"sr_BA", 0x1C1A}, {"sr_BA@latin", 0x181A}, {"sr_ME", 0x301A},
    {"sr_ME@latin", 0x2C1A}, {"sr_RS@latin", 0x241A}, {"sv", 0x041D},    {"sv_FI", 0x081D},       {"sw", 0x0441},
    {"ta", 0x0449},          {"te", 0x044A},          {"tg", 0x0428},    {"th", 0x041E},          {"tk", 0x0442},
    {"tn", 0x0432},          {"tr", 0x041F},          {"tt", 0x0444},    {"ug", 0x0480},          {"uk", 0x0422},
    {"ur", 0x0420},          {"ur_IN", 0x0820},       {"uz", 0x0443},    {"uz@cyrillic", 0x0843}, {"vi", 0x042A},
    {"wo", 0x0488},          {"xh", 0x0434},          {"yo", 0x046A},    {"zh", 0x0804},          {"zh_HK", 0x0C04},
    {"zh_MO", 0x1404},       {"zh_SG", 0x1004},       {"zh_TW", 0x0404}, {"zu", 0x0435},
};

LANGID Find(std::string_view locale) {
    const Row* row = std::find_if(std::begin(kRows), std::end(kRows), [=](const Row& r) { return r.locale == locale; });
    return row == std::end(kRows) ? LANGID{LANG_NEUTRAL} : row->language;
}

} // namespace

LANGID LanguageOfLocale(std::string_view locale) {
    const std::string_view modifier = locale.substr(std::min(locale.find('@'), locale.size()));
    const std::string_view place = locale.substr(0, locale.find_first_of(".@"));
    const std::string_view language = place.substr(0, place.find('_'));
    for (const std::string_view base : {place, language})
        for (const std::string& name : {std::string(base).append(modifier), std::string(base)})
            if (const LANGID found = Find(name))
                return found;
    return MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
}

} // namespace kel::platform
